// The handlers of the system service, by family; its table is in system.cpp.
#pragma once

#include "services/service.h"

namespace vmeter {

// system_information.cpp
Body failureRecord(Meter& meter, std::span<const uint8_t> request);
Body productData(Meter& meter, std::span<const uint8_t> request);
Body setFailure(Meter& meter, std::span<const uint8_t> request);

// system_power.cpp
Body setBrightness(Meter& meter, std::span<const uint8_t> request);
Body rebootMeter(Meter& meter, std::span<const uint8_t> request);
Body shutDown(Meter& meter, std::span<const uint8_t> request);
Body standbyMeter(Meter& meter, std::span<const uint8_t> request);
Body wakeUpMeter(Meter& meter, std::span<const uint8_t> request);
Body setDeveloperMode(Meter& meter, std::span<const uint8_t> request);

// system_update.cpp
Body updateProgram(Meter& meter, std::span<const uint8_t> request);

// system_settings.cpp
Body factoryDefault(Meter& meter, std::span<const uint8_t> request);
Body fileChanged(Meter& meter, std::span<const uint8_t> request);
Body recordChanged(Meter& meter, std::span<const uint8_t> request);

} // namespace vmeter

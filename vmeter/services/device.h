// The handlers of the device service that have files of their own; its table is in device.cpp.
#pragma once

#include "services/service.h"

namespace vmeter {

// angle.cpp
Body angleStart(Meter& meter, std::span<const uint8_t> request);
Body angleCalibrationStart(Meter& meter, std::span<const uint8_t> request);
Body angleCalibrationStatus(Meter& meter, std::span<const uint8_t> request);
Body angleDetail(Meter& meter, std::span<const uint8_t> request);

// device_status.cpp
Body deviceStatus(Meter& meter, std::span<const uint8_t> request);

} // namespace vmeter

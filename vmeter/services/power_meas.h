// The measurement service's commands about power: standby, low battery, calibration. They work in standby,
// but for the calibration.
#pragma once

#include "service.h"

namespace vmeter {

Body standbyMeasurement(Meter& meter, std::span<const uint8_t> request);
Body wakeUpMeasurement(Meter& meter, std::span<const uint8_t> request);
Body calibrate(Meter& meter, std::span<const uint8_t> request);
Body standbyState(Meter& meter, std::span<const uint8_t> request);
Body lowBattery(Meter& meter, std::span<const uint8_t> request);
Body forceStandby(Meter& meter, std::span<const uint8_t> request);
Body forceWakeUp(Meter& meter, std::span<const uint8_t> request);

} // namespace vmeter

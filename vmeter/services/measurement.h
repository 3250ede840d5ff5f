// The handlers of the measurement service, by family; its table is in measurement.cpp.
#pragma once

#include "services/service.h"

#include <initializer_list>

namespace vmeter {

// single.cpp
Body singleStart(Meter& meter, std::span<const uint8_t> request);
Body singleResult(Meter& meter, std::span<const uint8_t> request);

// constellation.cpp
Body constellationStart(Meter& meter, std::span<const uint8_t> request);
Body constellationResult(Meter& meter, std::span<const uint8_t> request);

// delay_profile.cpp
Body delayProfileStart(Meter& meter, std::span<const uint8_t> request);
Body delayProfileBlock(Meter& meter, std::span<const uint8_t> request);

// channel_list.cpp: multi-channel measurement and scan
Body listStart(Meter& meter, std::span<const uint8_t> request);
Body listResult(Meter& meter, std::span<const uint8_t> request);

// optical_dc.cpp
Body opticalStart(Meter& meter, std::span<const uint8_t> request);
Body opticalResult(Meter& meter, std::span<const uint8_t> request);
Body dcStart(Meter& meter, std::span<const uint8_t> request);
Body dcResult(Meter& meter, std::span<const uint8_t> request);

// power_meas.cpp: standby, low battery and calibration
Body standbyMeasurement(Meter& meter, std::span<const uint8_t> request);
Body wakeUpMeasurement(Meter& meter, std::span<const uint8_t> request);
Body calibrate(Meter& meter, std::span<const uint8_t> request);
Body standbyState(Meter& meter, std::span<const uint8_t> request);
Body lowBattery(Meter& meter, std::span<const uint8_t> request);
Body forceStandby(Meter& meter, std::span<const uint8_t> request);
Body forceWakeUp(Meter& meter, std::span<const uint8_t> request);

// Every start of a run on the tuner asks here: kRetOk, or why not. A run of the same kind is replaced.
uint8_t tunerRet(const State& state, std::initializer_list<Run> kind);

} // namespace vmeter

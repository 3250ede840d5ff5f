// What the single measurement shares with the priority measurement.
#pragma once

#include "frame/log.h"
#include "libvx63.h"

namespace vx63 {

// Starts a single measurement. Returns a result code; what failed is logged.
int32_t vx63_startSingleMeasCommon(uint8_t ucDispType, const MeasCondition* pCondition);

// Stops it. Returns a result code.
int32_t stopSingle(uint8_t ucDispType, Caller caller = {});

} // namespace vx63

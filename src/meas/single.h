// The start that the single measurement shares with the priority multi-channel measurement.
#pragma once

#include "libvx63.h"

namespace vx63 {

// Starts a single measurement. Returns a result code; what failed is logged.
int32_t vx63_startSingleMeasCommon(uint8_t ucDispType, const MeasCondition* pCondition);

} // namespace vx63

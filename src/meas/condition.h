// The measurement condition on its way into a request.
#pragma once

#include "frame/log.h"
#include "libvx63.h"
#include "meas/wire.h"
#include "meas/wire_multi.h"

namespace vx63 {

// Logs the condition and packs it into a start body. A powerSupply out of range is logged and taken as off.
wire::StartRequest packStart(uint8_t ucDispType, const MeasCondition& condition, Caller caller = {});

// The stop body: the display type alone.
wire::StartRequest packStop(uint8_t ucDispType, Caller caller = {});

// Packs the condition into a channel of a registration; powerSupply as in packStart.
wire::Channel packChannel(const MeasCondition& condition, Caller caller = {});

} // namespace vx63

// The measurement condition on its way into a request.
#pragma once

#include "frame/log.h"
#include "libvx63.h"
#include "meas/wire.h"

namespace vx63 {

// The two bytes in which a request carries the antenna power supply.
struct Supply {
    uint8_t ucSupplyLevel;
    uint8_t ucSupplyKind;
};

// Translates MeasCondition::powerSupply; one out of range is logged and taken as off.
Supply translateSupply(int32_t powerSupply, Site at = Site());

// Logs the condition and packs it into a start body.
wire::StartRequest packStart(uint8_t ucDispType, const MeasCondition& condition, Site at = Site());

// The stop body: the display type alone.
wire::StartRequest packStop(uint8_t ucDispType, Site at = Site());

} // namespace vx63

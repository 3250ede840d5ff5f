// The readings of the antenna power supply as text and as JSON.
#pragma once

#include "common/json.h"
#include "common/table.h"
#include "libvx63.h"

namespace tool {

// Throws Failure.
PowerSupplyInfo readSupply();

Rows supplyRows(const PowerSupplyInfo& info);
Json supplyJson(const PowerSupplyInfo& info);

} // namespace tool

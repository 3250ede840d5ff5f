// The readings of the antenna power supply as text and as JSON.
#pragma once

#include "common/text.h"
#include "libvx63.h"

#include <nlohmann/json.hpp>

namespace tool {

// Throws Failure.
PowerSupplyInfo readSupply();

Rows supplyRows(const PowerSupplyInfo& info);
nlohmann::ordered_json supplyJson(const PowerSupplyInfo& info);

} // namespace tool

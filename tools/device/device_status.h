// The device status as text and as JSON.
#pragma once

#include "common/json.h"
#include "common/table.h"
#include "libvx63.h"

namespace tool {

Rows deviceStatusRows(const DeviceStatus& status);
Json deviceStatusJson(const DeviceStatus& status);

// Whether every value is one that a meter can have.
bool isPlausible(const DeviceStatus& status);

} // namespace tool

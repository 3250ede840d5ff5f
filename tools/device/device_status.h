// The device status as text and as JSON.
#pragma once

#include "common/text.h"
#include "libvx63.h"

#include <nlohmann/json.hpp>

namespace tool {

// Throws Failure.
DeviceStatus readDeviceStatus();

Rows deviceStatusRows(const DeviceStatus& status);
nlohmann::ordered_json deviceStatusJson(const DeviceStatus& status);

// Whether every value is one that a meter can have.
bool isPlausible(const DeviceStatus& status);

} // namespace tool

// The keys of the meter.
#pragma once

#include "device/wire.h"
#include "model/device_scene.h"

#include <cstdint>

namespace vmeter {

// Each key 1 pressed, 0 not, at a moment of the simulated time.
vx63::wire::KeyStatusResponse keyStates(const DeviceScene& scene, uint64_t ulSimMs);

} // namespace vmeter

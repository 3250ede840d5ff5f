// The simulated surroundings of the meter, as a scene file tells them.
#pragma once

#include "faults.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vmeter {

struct Scene {
    uint64_t seed = 1;
    uint32_t clockMs = 100; // simulated milliseconds per request
    std::vector<FaultRule> faults;
};

// Reads a scene file; throws std::runtime_error "FILE:LINE: KEY: reason" when it cannot be used.
Scene loadScene(const std::string& path);

// The scene that is built in.
Scene defaultScene();

} // namespace vmeter

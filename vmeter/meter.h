// The virtual meter that the five service processes share: the scene, which never changes, and the state,
// which lies in memory that all of them map.
#pragma once

#include "scene/scene.h"

#include <cstdint>
#include <type_traits>

namespace vmeter {

// What the calls have done to the meter so far. Lies in shared memory: no pointers, zero at the start.
struct State {
    uint64_t ulSimMs; // simulated time: goes on by Scene::clockMs with every request that a service handles
};
static_assert(std::is_trivially_copyable_v<State>);

struct Meter {
    const Scene& scene;
    State& state;
};

} // namespace vmeter

// The virtual meter that the five service processes share: the scene, which never changes, and the state,
// which lies in memory that all of them map.
#pragma once

#include "device_state.h"
#include "meas/wire.h"
#include "scene/scene.h"
#include "settings.h"

#include <cstdint>
#include <string>
#include <type_traits>

namespace vmeter {

// A single measurement and its demodulator.
struct SingleState {
    vx63::wire::StartRequest start; // as it was asked for
    uint64_t ulSearchMs;            // simulated time since which the demodulator searches
    uint64_t ulCountMs;             // simulated time since which bit errors are counted
    uint32_t ulWanted;              // the signal that it sees: its place in Scene::signals, from 1; 0 none
    uint8_t ucRunning;
    uint8_t ucLocked;
};

// What the calls have done to the meter so far. Lies in shared memory: no pointers, zero at the start.
struct State {
    uint64_t ulSimMs; // simulated time: goes on by Scene::clockMs with every request that a service handles
    uint8_t ucInput;
    uint8_t ucSupplyCode; // 0 to 4, as asked for
    uint8_t ucMixBandSupply;
    SingleState single;
    DeviceState device;
};
static_assert(std::is_trivially_copyable_v<State>);

struct Meter {
    const Scene& scene;
    State& state;
    const Settings& settings = kForeignSettings;
    std::string note = {}; // what the trace says beside the answer
};

} // namespace vmeter

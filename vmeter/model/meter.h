// The virtual meter that the five service processes share: the scene, which never changes, and the state,
// which lies in memory that all of them map.
#pragma once

#include "meas/wire.h"
#include "meas/wire_multi.h"
#include "model/device_state.h"
#include "model/scene.h"
#include "model/settings.h"

#include <cstdint>
#include <string>
#include <type_traits>

namespace vmeter {

// What the tuner is taken for; one thing at a time.
enum class Run : uint8_t { none, single, delayProfile, multi, scan };

// The demodulator of a run on one channel.
struct DemodulatorState {
    vx63::wire::StartRequest start; // as it was asked for
    uint64_t ulSearchMs;            // simulated time since which it searches
    uint64_t ulCountMs;             // simulated time since which bit errors are counted
    uint32_t ulWanted;              // the signal that it sees: its place in Scene::signals, from 1; 0 none
    uint8_t ucLocked;
};

// The collection of constellation points beside a single measurement.
struct ConstellationState {
    uint64_t ulBeginMs;   // simulated time at which the collection began
    uint16_t usCollected; // points of a collection: 1000, 2000, 4000; 0: none is asked for
    uint16_t usRead;      // of them read so far
};

inline constexpr uint16_t kListMax = 256; // channels: their index has 8 bits

// The list of channels of a multi-channel measurement or a scan. Its results are a function of the time
// since the start, so that none need be kept.
struct ListState {
    vx63::wire::Channel channels[kListMax];
    uint32_t ulEndMs[kListMax]; // when the channel has been measured, from the start of its round
    uint64_t ulStartMs;
    uint16_t usCount;
    uint8_t ucNextIdx;  // where the next part of a registration belongs
    uint8_t ucSupplied; // whether the channels get their power supply
};

// The angle sensor and its calibration.
struct AngleState {
    uint64_t ulCalibrationMs; // simulated time at which the calibration began
    uint8_t ucCalibration;    // whether one was ever begun
    uint8_t ucOn;
};

// What the calls have done to the meter so far. Lies in shared memory: no pointers, zero at the start.
struct State {
    uint64_t ulSimMs; // simulated time: goes on by Scene::clockMs with every request that a service handles
    uint8_t ucInput;
    uint8_t ucSupplyCode; // 0 to 4, as asked for; a list's channels bring their own, see supplyCodeNow()
    uint8_t ucMixBandSupply;
    Run run;
    DemodulatorState demodulator;
    ConstellationState constellation;
    ListState list;
    uint32_t ulOpticalNm; // wavelength of the running optical measurement; 0 none
    uint8_t ucDcRunning;
    AngleState angle;
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

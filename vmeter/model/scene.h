// The simulated surroundings of the meter, as a scene file tells them. docs/scene.md tells every key,
// docs/measured-values.md what the meter makes of them.
#pragma once

#include "model/broadcast.h"
#include "model/cable.h"
#include "model/device_scene.h"
#include "model/fault_rule.h"

#include <cstdint>
#include <vector>

namespace vmeter {

inline constexpr uint8_t kInputCount = 2; // 0 roof antenna, 1 cable outlet

// What the tuner reaches; a signal lies there on its cable.
inline constexpr uint32_t kTunerMinKhz = 10000;
inline constexpr uint32_t kTunerMaxKhz = 3224000;

// What hangs at the antenna's end of the cable and lives on the power supply.
struct Lnb {
    uint32_t ulCurrentMa = 0;
    bool shortCircuit = false;
    double crossPolarDb = 25.0; // how much weaker the other polarisation comes through
};

struct Input {
    Cable cable;
    Lnb lnb;
    double dcV = 0.0; // fed into the cable by others
};

// What the antenna power supply must deliver for a signal to arrive.
enum class SupplyNeed : uint8_t { none, any, volt11, volt15 };
enum class ToneNeed : uint8_t { any, off, on };

// Another path of a signal, beside its main one.
struct Echo {
    double delayUs; // below 0: comes before the main path
    double levelDb; // of the main path
    double phaseDeg;
};

struct Signal {
    uint8_t ucInput;
    uint32_t ulFrequencyKhz; // as broadcast
    uint32_t ulLoKhz;        // local oscillator of the converter before the cable, 0 for none
    System system;
    Modulation modulation;
    Modulation carriers; // of OFDM; none otherwise
    double bandwidthKhz; // noise bandwidth: the symbol rate of a single carrier
    double levelDbuv;    // at the antenna's or the outlet's end of the cable
    double cnDb;         // there
    uint16_t usTsid;
    uint8_t ucGuardInterval; // as on the wire: 0 1/32, 1 1/16, 2 1/8, 3 1/4
    uint8_t ucLayers;
    SupplyNeed supply;
    ToneNeed tone;
    uint32_t ulLockMs;        // simulated time from tuning to lock
    std::vector<Echo> echoes; // of OFDM

    uint32_t ifKhz() const { return ulFrequencyKhz - ulLoKhz; } // on the cable
};

// Light in the fibre.
struct Light {
    double wavelengthNm;
    double powerDbm;
};

// The antenna that carries the angle sensor, and its surroundings.
struct Antenna {
    // Where it points on average, and how far and how slowly it swings about that.
    double rollDeg = 0.0;
    double pitchDeg = 0.0;
    double headingDeg = 0.0; // from magnetic north, clockwise
    double rollSwingDeg = 0.0;
    double pitchSwingDeg = 0.0;
    double rollPeriodMs = 4000.0;
    double pitchPeriodMs = 4000.0;
    // The earth's field, and what the antenna's own metal adds to it in the sensor's frame.
    double fieldUt = 46.0;
    double inclinationDeg = 49.0; // below the horizon
    double hardIronUt[3] = {0.0, 0.0, 0.0};
    // Standard deviations of the sensor on each axis.
    double accelerationSigmaG = 0.0;
    double fieldSigmaUt = 0.0;
};

struct Scene {
    uint64_t seed = 1;
    uint32_t clockMs = 100; // simulated milliseconds per request
    double noiseFigureDb = 8.0;
    double levelSigmaDb = 0.1; // fluctuation of the readings
    double cnSigmaDb = 0.2;
    Input inputs[kInputCount];
    std::vector<Signal> signals;
    std::vector<Light> lights;
    Antenna antenna;
    std::vector<FaultRule> faults;
    DeviceScene device; // the meter itself
};

} // namespace vmeter

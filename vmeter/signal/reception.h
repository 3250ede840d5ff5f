// What stands at the tuner: levels and C/N as they follow from the scene, before any fluctuation.
#pragma once

#include "model/scene.h"
#include "signal/power_supply.h"

#include <cstdint>

namespace vmeter {

// Thermal noise k * T * B at 290 K over a bandwidth in kHz, in dBuV at 75 ohm.
double thermalNoiseDbuv(double bandwidthKhz);

// The frequency on the cable of ulFreq behind a converter with ulLoFreq, all in kHz; an oscillator of 0 or
// 4294967295 means that nothing is converted. 0 when the oscillator is not below the frequency.
uint32_t intermediateKhz(uint32_t ulFreq, uint32_t ulLoFreq);

struct Reception {
    double levelDbuv;     // all power in the measuring bandwidth: signals, their noise, the receiver's
    double cnDb;          // wanted signal over everything else there; minus infinity without one
    const Signal* wanted; // the strongest signal within reach of the tuning; null when there is none
};

// system tells the measuring bandwidth where there is no wanted signal.
Reception receive(const Scene& scene, uint8_t ucInput, const SupplyState& supply, uint32_t ifKhz,
                  System system);

// Bits per second of a signal before error correction; 0 for one that carries none.
double bitRate(const Signal& signal);

// The modulation whose theory tells the signal's errors: its own, or that of its OFDM carriers.
Modulation symbolModulation(const Signal& signal);

} // namespace vmeter

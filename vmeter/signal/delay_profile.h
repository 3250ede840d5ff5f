// The delay profile of an OFDM signal: its impulse response, as its pilots show it.
#pragma once

#include "model/scene.h"
#include "signal/random.h"

#include <cstdint>

namespace vmeter {

// Pilots on every third carrier show a third of the useful symbol of 1008 us: 336 us in 2048 samples, more
// than the longest guard interval of 252 us. The main path is at the sample that leaves 84 us before it.
inline constexpr uint32_t kProfileSamples = 2048;
inline constexpr uint32_t kProfileMain = 512;
inline constexpr double kProfileStepUs = 1008.0 / 3.0 / kProfileSamples; // 0.1640625

// Half decibels of a sample against the main path by itself, rounded, at most 127; -128: 64 dB below or less.
// cnDb is the C/N in the signal's bandwidth, random stands for this sample's noise.
int8_t profileSample(const Signal& signal, uint32_t sample, double cnDb, Random& random);

} // namespace vmeter

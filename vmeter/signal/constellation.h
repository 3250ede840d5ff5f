// Constellation diagrams: where a modulation's points lie, and where a demodulator sees them in noise.
#pragma once

#include "model/broadcast.h"
#include "signal/random.h"

#include <cstdint>
#include <span>

namespace vmeter {

struct Point {
    double i;
    double q;
};

// The ideal points, with a mean power of 1. Empty for none and OFDM.
std::span<const Point> idealPoints(Modulation modulation);

// The root mean square amplitude of the ideal points on the scale of the signed bytes.
inline constexpr double kConstellationRms = 64.0;

struct ReceivedPoint {
    int8_t i;
    int8_t q;
};

// Draws one symbol, each equally likely, and its point in Gaussian noise at a C/N. The noise is that of the
// C/N less the 1/12 that rounding to whole numbers adds on each axis.
ReceivedPoint drawPoint(Random& random, std::span<const Point> ideal, double cnDb);

} // namespace vmeter

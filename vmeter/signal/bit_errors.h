// What theory says of a modulation's errors.
#pragma once

#include "model/broadcast.h"

namespace vmeter {

// Gaussian tail probability: Q(x) = erfc(x / sqrt(2)) / 2.
double gaussianTail(double x);

// Bit error ratio before error correction over an additive white Gaussian noise channel, Gray coding,
// symbol error taken as one bit error. cnDb is the energy per symbol over the noise density (the noise
// bandwidth is the symbol rate), or, for a carrier of an OFDM signal, that carrier's C/N. From 0.5 or less
// at no C/N down to 0. Not for none and OFDM.
double bitErrorRatio(Modulation modulation, double cnDb);

} // namespace vmeter

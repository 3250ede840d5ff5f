// Constellation points against the ideal points of their modulation. Scale and positions are those of
// docs/measured-values.md: the ideal points have a root mean square amplitude of 64.
#pragma once

#include "libvx63.h"

#include <complex>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tool {

struct IdealPoints {
    std::string_view modulation; // "64QAM"; of the carriers, for OFDM
    std::vector<std::complex<double>> points;
};

// The ideal points of a modulation bit, for which the points are needed with OFDM only: its carriers can be
// QPSK, 16QAM or 64QAM, and the meter does not say which. Taken is that under which the points, in
// Gaussian noise at the measured C/N, are likeliest. Nothing for a modulation that is not known.
std::optional<IdealPoints> idealPoints(uint32_t MOD, std::span<const ConstaPoint> points, double cnDb);

// The modulation error ratio in dB: the power of the ideal points over that of the errors, each point
// belonging to the ideal point next to it (ETSI TR 101 290, 6.1.1). Nothing without points or without error.
std::optional<double> modulationErrorRatio(std::span<const ConstaPoint> points, const IdealPoints& ideal);

// The same in tenths, as it is shown beside level and C/N: what is judged is what is shown.
std::optional<double> shownRatio(std::span<const ConstaPoint> points, const IdealPoints& ideal);

} // namespace tool

// The paths of a signal in its delay profile. Time base and scale are those of docs/measured-values.md.
#pragma once

#include "libvx63.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tool {

inline constexpr double kSampleUs = 0.1640625;
inline constexpr size_t kMainSample = 512;

// Delay of a sample against the main path, in us.
constexpr double delayOf(double sample)
{
    return (sample - static_cast<double>(kMainSample)) * kSampleUs;
}

// Level of a sample against the main path, in dB; -64 stands for that and less.
constexpr double levelOf(int8_t sample)
{
    return sample / 2.0;
}

struct Path {
    double delayUs;
    double levelDb;
};

// How much longer than that of the main path the way is, in km.
constexpr double distanceKm(double delayUs)
{
    return delayUs * 0.299792458;
}

// The paths that stand out of the noise and of the side lobes of stronger ones, the main path among them, in
// the order of their delay. At most kMaxPaths, the strongest ones.
inline constexpr size_t kMaxPaths = 32;
std::vector<Path> findPaths(const int8_t (&profile)[VX63_DLYPRF_SAMPLES]);

// In us against the main path.
struct GuardInterval {
    double from;
    double to;
    std::string name; // "1/8"
};

// Begins with the first path: what comes within it does not disturb. Nothing where the signal has none.
std::optional<GuardInterval> guardOf(const MultiMeasResult& result, const std::vector<Path>& paths);

} // namespace tool

#include "measure/echoes.h"

#include "common/names.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

namespace tool {

namespace {

constexpr double kBandMhz = 5.57;  // of the pulse: what the carriers of a terrestrial signal take up
constexpr double kMainLobe = 2;    // in 1/kBandMhz: where the pulse is 0 for the first time
constexpr double kMarginDb = 6;    // by which a path stands out of the side lobes of the others
constexpr double kNoiseDb = 14;    // by which no sample of 2048 stands out of the noise's median by chance
constexpr double kSymbolUs = 1008; // useful part of a symbol
constexpr double kLowestDb = -60;  // lower samples come too near the end of the scale

// The most that a path of amplitude 1 shows at this distance, as an amplitude: the pulse under its Hann
// window, sin(pi x) / (pi x (1 - x^2)), without its sine.
double sideLobe(double distanceUs)
{
    const double x = std::abs(distanceUs) * kBandMhz;
    return x < kMainLobe ? 1 : 1 / (std::numbers::pi * x * (x * x - 1));
}

double amplitude(double db)
{
    return std::pow(10, db / 20);
}

double noiseLevel(const int8_t (&profile)[VX63_DLYPRF_SAMPLES])
{
    std::vector<int8_t> sorted(std::begin(profile), std::end(profile));
    const auto middle = sorted.begin() + VX63_DLYPRF_SAMPLES / 2;
    std::ranges::nth_element(sorted, middle);
    return levelOf(*middle);
}

// The top of the parabola through a peak and its neighbours; at either end the peak itself.
Path topAt(const int8_t (&profile)[VX63_DLYPRF_SAMPLES], size_t peak)
{
    const double top = levelOf(profile[peak]);
    if (peak == 0 || peak + 1 == VX63_DLYPRF_SAMPLES)
        return {delayOf(static_cast<double>(peak)), top};
    const double left = levelOf(profile[peak - 1]);
    const double right = levelOf(profile[peak + 1]);
    const double bend = left - 2 * top + right; // a peak is higher than its left neighbour: below 0
    const double shift = 0.5 * (left - right) / bend;
    return {delayOf(static_cast<double>(peak) + shift), top - 0.25 * (left - right) * shift};
}

bool isPeak(const int8_t (&profile)[VX63_DLYPRF_SAMPLES], size_t i)
{
    const bool rises = i == 0 || profile[i - 1] < profile[i];
    const bool falls = i + 1 == VX63_DLYPRF_SAMPLES || profile[i + 1] <= profile[i];
    return rises && falls;
}

} // namespace

std::vector<Path> findPaths(const int8_t (&profile)[VX63_DLYPRF_SAMPLES])
{
    const double lowest = std::max(noiseLevel(profile) + kNoiseDb, kLowestDb);
    std::vector<size_t> peaks;
    for (size_t i = 0; i < VX63_DLYPRF_SAMPLES; ++i)
        if (isPeak(profile, i) && levelOf(profile[i]) >= lowest)
            peaks.push_back(i);
    std::ranges::stable_sort(peaks, std::ranges::greater(), [&](size_t i) { return profile[i]; });

    std::vector<Path> paths;
    for (const size_t peak : peaks) {
        if (paths.size() == kMaxPaths)
            break;
        const Path path = topAt(profile, peak);
        double lobes = 0;
        for (const Path& stronger : paths)
            lobes += amplitude(stronger.levelDb) * sideLobe(path.delayUs - stronger.delayUs);
        if (path.levelDb >= 20 * std::log10(lobes + 1e-9) + kMarginDb)
            paths.push_back(path);
    }
    std::ranges::sort(paths, {}, &Path::delayUs);
    return paths;
}

std::optional<GuardInterval> guardOf(const MultiMeasResult& result, const std::vector<Path>& paths)
{
    const auto name = guardIntervalName(result.GI);
    if (!name || result.MOD != VX63_MOD_OFDM || paths.empty())
        return std::nullopt;
    const double length = kSymbolUs * (1 << result.GI) / 32;
    return GuardInterval{paths.front().delayUs, paths.front().delayUs + length, std::string(*name)};
}

} // namespace tool

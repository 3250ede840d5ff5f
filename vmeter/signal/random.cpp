#include "signal/random.h"

#include <algorithm>
#include <cmath>

namespace vmeter {
namespace {

constexpr uint64_t kStep = 0x9E3779B97F4A7C15;

// Its finaliser by itself.
uint64_t mix(uint64_t value)
{
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EB;
    return value ^ (value >> 31);
}

} // namespace

uint64_t splitMix64(uint64_t value)
{
    return mix(value + kStep);
}

double toUniform(uint64_t bits)
{
    return static_cast<double>(bits >> 11) * 0x1p-53;
}

Random::Random(uint64_t seed, uint64_t ulSimMs, Purpose purpose, uint64_t ulWhat)
    : state_(mix(mix(mix(splitMix64(seed) ^ ulSimMs) + static_cast<uint64_t>(purpose)) ^ ulWhat))
{}

uint64_t Random::bits()
{
    state_ += kStep;
    return mix(state_);
}

double Random::uniform()
{
    return toUniform(bits());
}

double Random::normal()
{
    // Twelve uniform numbers of variance 1/12 (Irwin-Hall): no function of libm, whose last bit differs
    // between machines, takes part.
    double sum = -6.0;
    for (int i = 0; i < 12; ++i)
        sum += uniform();
    return sum;
}

uint32_t drawErrors(Random& random, uint32_t n, double p)
{
    const double mean = n * p;
    if (mean >= 50.0) {
        const double drawn = std::round(mean + std::sqrt(mean * (1.0 - p)) * random.normal());
        return static_cast<uint32_t>(std::clamp(drawn, 0.0, static_cast<double>(n)));
    }
    // By inversion: walk up the distribution until it passes a uniform number.
    const double target = random.uniform();
    double term = std::exp(-mean);
    double sum = term;
    uint32_t count = 0;
    while (sum <= target && count < n && term > 0.0) {
        ++count;
        term *= mean / count;
        sum += term;
    }
    return count;
}

} // namespace vmeter

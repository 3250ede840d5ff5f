#include "signal/delay_profile.h"
#include "signal/decibel.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace vmeter {
namespace {

// Pilots in a bandwidth of 5570 kHz: every third of 5616 carriers.
constexpr double kPilotsPerKhz = 1872.0 / 5570.0;

// How much more noise a Hann window lets through than its response to the main path: its noise bandwidth.
constexpr double kHannNoise = 1.5;

// The impulse response of a band under a Hann window, 1 at its middle: sin(pi x) / (pi x (1 - x^2)) with x
// the delay times the bandwidth.
double pulse(double x)
{
    x = std::abs(x);
    if (x < 1e-6)
        return 1.0;
    if (std::abs(x - 1.0) < 1e-6)
        return 0.5;
    return std::sin(std::numbers::pi * x) / (std::numbers::pi * x * (1.0 - x * x));
}

} // namespace

int8_t profileSample(const Signal& signal, uint32_t sample, double cnDb, Random& random)
{
    const double delayUs = (static_cast<double>(sample) - kProfileMain) * kProfileStepUs;
    const double perUs = signal.bandwidthKhz / 1e3;
    std::complex<double> response = pulse(delayUs * perUs);
    for (const Echo& echo : signal.echoes) {
        response += std::polar(fromDb(echo.levelDb / 2.0), echo.phaseDeg * std::numbers::pi / 180.0) *
                    pulse((delayUs - echo.delayUs) * perUs);
    }
    const double pilots = signal.bandwidthKhz * kPilotsPerKhz;
    const double sigma = std::sqrt(kHannNoise / (fromDb(cnDb) * pilots) / 2.0);
    const double real = sigma * random.normal();
    const double imaginary = sigma * random.normal();
    response += std::complex<double>(real, imaginary);
    const double halfDb = std::round(2.0 * toDb(std::norm(response)));
    return static_cast<int8_t>(std::clamp(halfDb, -128.0, 127.0));
}

} // namespace vmeter

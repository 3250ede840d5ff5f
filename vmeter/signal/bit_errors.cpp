#include "signal/bit_errors.h"
#include "signal/decibel.h"

#include <cmath>
#include <numbers>

namespace vmeter {

double gaussianTail(double x)
{
    return 0.5 * std::erfc(x / std::numbers::sqrt2);
}

double bitErrorRatio(Modulation modulation, double cnDb)
{
    const double cn = fromDb(cnDb);
    // Square QAM of M points; with M = 32 it stands for the cross shape too.
    const auto qam = [cn](double points) {
        return 4.0 / std::log2(points) * (1.0 - 1.0 / std::sqrt(points)) *
               gaussianTail(std::sqrt(3.0 * cn / (points - 1.0)));
    };
    using enum Modulation;
    switch (modulation) {
    case none:
    case ofdm:
        break;
    case bpsk:
        return gaussianTail(std::sqrt(2.0 * cn));
    case qpsk:
        return gaussianTail(std::sqrt(cn));
    case psk8:
        return 2.0 / 3.0 * gaussianTail(std::sqrt(2.0 * cn) * std::sin(std::numbers::pi / 8.0));
    case apsk16:
    case qam16:
        return qam(16.0);
    case apsk32:
        return qam(32.0);
    case qam64:
        return qam(64.0);
    case qam256:
        return qam(256.0);
    }
    return 0.0;
}

} // namespace vmeter

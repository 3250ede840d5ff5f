#include "signal/constellation.h"
#include "signal/decibel.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>
#include <vector>

namespace vmeter {
namespace {

using Points = std::vector<Point>;

// Points on a circle; the first one lies at an angle of turn times its distance to the next.
struct Ring {
    unsigned count;
    double radius;
    double turn;
};

// Brought to a mean power of 1.
Points normalised(Points points)
{
    double power = 0.0;
    for (const Point& point : points)
        power += point.i * point.i + point.q * point.q;
    const double scale = std::sqrt(static_cast<double>(points.size()) / power);
    for (Point& point : points)
        point = {point.i * scale, point.q * scale};
    return points;
}

Points rings(std::initializer_list<Ring> list)
{
    Points points;
    for (const Ring& ring : list) {
        for (unsigned k = 0; k < ring.count; ++k) {
            const double angle = 2.0 * std::numbers::pi * (k + ring.turn) / ring.count;
            points.push_back({ring.radius * std::cos(angle), ring.radius * std::sin(angle)});
        }
    }
    return normalised(points);
}

Points square(int side)
{
    Points points;
    for (int i = 1 - side; i < side; i += 2) {
        for (int q = 1 - side; q < side; q += 2)
            points.push_back({static_cast<double>(i), static_cast<double>(q)});
    }
    return normalised(points);
}

// The ring ratios of the two APSK are those of code rate 3/4 in ETSI EN 302 307-1, 5.4.3 and 5.4.4.
const Points kBpsk = rings({{2, 1.0, 0.0}});
const Points kQpsk = square(2);
const Points kPsk8 = rings({{8, 1.0, 0.0}});
const Points kApsk16 = rings({{4, 1.0, 0.5}, {12, 2.85, 0.5}});
const Points kApsk32 = rings({{4, 1.0, 0.5}, {12, 2.84, 0.5}, {16, 5.27, 0.0}});
const Points kQam16 = square(4);
const Points kQam64 = square(8);
const Points kQam256 = square(16);

int8_t toByte(double value)
{
    return static_cast<int8_t>(std::clamp(std::round(value), -128.0, 127.0));
}

} // namespace

std::span<const Point> idealPoints(Modulation modulation)
{
    switch (modulation) {
    case Modulation::none:
    case Modulation::ofdm:
        return {};
    case Modulation::bpsk:
        return kBpsk;
    case Modulation::qpsk:
        return kQpsk;
    case Modulation::psk8:
        return kPsk8;
    case Modulation::apsk16:
        return kApsk16;
    case Modulation::apsk32:
        return kApsk32;
    case Modulation::qam16:
        return kQam16;
    case Modulation::qam64:
        return kQam64;
    case Modulation::qam256:
        return kQam256;
    }
    return {};
}

ReceivedPoint drawPoint(Random& random, std::span<const Point> ideal, double cnDb)
{
    const auto symbol = static_cast<size_t>(random.uniform() * static_cast<double>(ideal.size()));
    const double variance = kConstellationRms * kConstellationRms / fromDb(cnDb) / 2.0;
    const double sigma = std::sqrt(std::max(0.0, variance - 1.0 / 12.0));
    const double i = kConstellationRms * ideal[symbol].i + sigma * random.normal();
    const double q = kConstellationRms * ideal[symbol].q + sigma * random.normal();
    return {.i = toByte(i), .q = toByte(q)};
}

} // namespace vmeter

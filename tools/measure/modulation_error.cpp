#include "measure/modulation_error.h"

#include "common/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace tool {

namespace {

using Point = std::complex<double>;
using Points = std::vector<Point>;

constexpr double kAmplitude = 64; // root mean square
constexpr double kDegree = std::numbers::pi / 180;

// To the scale of the meter.
Points scaled(Points points)
{
    double power = 0;
    for (const Point& point : points)
        power += std::norm(point);
    const double scale = kAmplitude / std::sqrt(power / static_cast<double>(points.size()));
    for (Point& point : points)
        point *= scale;
    return points;
}

struct Ring {
    int count;
    double first; // degrees
    double radius;
};

Points rings(std::initializer_list<Ring> list)
{
    Points points;
    for (const Ring& ring : list)
        for (int i = 0; i < ring.count; ++i)
            points.push_back(std::polar(ring.radius, (ring.first + 360.0 * i / ring.count) * kDegree));
    return scaled(points);
}

Points square(int side)
{
    Points points;
    for (int i = 1 - side; i < side; i += 2)
        for (int q = 1 - side; q < side; q += 2)
            points.emplace_back(i, q);
    return scaled(points);
}

double nearestNorm(const Point& point, const Points& ideal, Point& nearest)
{
    double least = std::numeric_limits<double>::max();
    for (const Point& candidate : ideal)
        if (const double error = std::norm(point - candidate); error < least) {
            least = error;
            nearest = candidate;
        }
    return least;
}

// Logarithm of how likely the points are: a mixture of as many Gaussian clouds as there are ideal points,
// with the variance of the noise on each axis. Common factors are left out.
double logLikelihood(std::span<const ConstaPoint> points, const Points& ideal, double variance)
{
    double sum = 0;
    for (const ConstaPoint& raw : points) {
        const Point point(raw.I, raw.Q);
        Point nearest;
        const double least = nearestNorm(point, ideal, nearest);
        double density = 0; // over that of the nearest one: never underflows to 0
        for (const Point& candidate : ideal)
            density += std::exp((least - std::norm(point - candidate)) / (2 * variance));
        sum += std::log(density / static_cast<double>(ideal.size())) - least / (2 * variance);
    }
    return sum;
}

IdealPoints carriersOf(std::span<const ConstaPoint> points, double cnDb)
{
    std::array<IdealPoints, 3> candidates{{{"QPSK", square(2)}, {"16QAM", square(4)}, {"64QAM", square(8)}}};
    // Whole numbers are never nearer to the ideal than rounding lets them.
    const double variance = std::max(kAmplitude * kAmplitude / (2 * std::pow(10, cnDb / 10)), 1.0 / 12);
    std::array<double, 3> likelihood;
    for (size_t i = 0; i < candidates.size(); ++i)
        likelihood[i] = logLikelihood(points, candidates[i].points, variance);
    return candidates[static_cast<size_t>(std::ranges::max_element(likelihood) - likelihood.begin())];
}

} // namespace

std::optional<IdealPoints> idealPoints(uint32_t MOD, std::span<const ConstaPoint> points, double cnDb)
{
    switch (MOD) {
    case VX63_MOD_OFDM:
        return carriersOf(points, cnDb);
    case VX63_MOD_BPSK:
        return IdealPoints{"BPSK", {{-kAmplitude, 0}, {kAmplitude, 0}}};
    case VX63_MOD_QPSK:
        return IdealPoints{"QPSK", square(2)};
    case VX63_MOD_8PSK_SATELLITE:
    case VX63_MOD_8PSK:
        return IdealPoints{"8PSK", rings({{8, 0, 1}})};
    case VX63_MOD_16APSK:
        return IdealPoints{"16APSK", rings({{4, 45, 1}, {12, 15, 2.85}})};
    case VX63_MOD_32APSK:
        return IdealPoints{"32APSK", rings({{4, 45, 1}, {12, 15, 2.84}, {16, 0, 5.27}})};
    case VX63_MOD_64QAM:
        return IdealPoints{"64QAM", square(8)};
    case VX63_MOD_256QAM:
        return IdealPoints{"256QAM", square(16)};
    default:
        return std::nullopt;
    }
}

std::optional<double> modulationErrorRatio(std::span<const ConstaPoint> points, const IdealPoints& ideal)
{
    double signal = 0;
    double error = 0;
    for (const ConstaPoint& raw : points) {
        Point nearest;
        error += nearestNorm(Point(raw.I, raw.Q), ideal.points, nearest);
        signal += std::norm(nearest);
    }
    if (error <= 0)
        return std::nullopt;
    return 10 * std::log10(signal / error);
}

std::optional<double> shownRatio(std::span<const ConstaPoint> points, const IdealPoints& ideal)
{
    const std::optional<double> ratio = modulationErrorRatio(points, ideal);
    return ratio ? std::optional(rounded(*ratio, 1)) : std::nullopt;
}

} // namespace tool

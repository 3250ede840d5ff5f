// Decibels and powers. A power here is any quantity that adds up: its unit cancels out.
#pragma once

#include <cmath>
#include <limits>

namespace vmeter {

// The level of a power of 0: nothing is there.
inline constexpr double kNothingDb = -std::numeric_limits<double>::infinity();

inline double toDb(double power)
{
    return 10.0 * std::log10(power);
}

inline double fromDb(double db)
{
    return std::pow(10.0, db / 10.0);
}

} // namespace vmeter

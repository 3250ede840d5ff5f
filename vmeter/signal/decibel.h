// Decibels and powers. A power here is any quantity that adds up: its unit cancels out.
#pragma once

#include <cmath>

namespace vmeter {

// Minus infinity for a power of 0: nothing is there.
inline double toDb(double power)
{
    return 10.0 * std::log10(power);
}

inline double fromDb(double db)
{
    return std::pow(10.0, db / 10.0);
}

} // namespace vmeter

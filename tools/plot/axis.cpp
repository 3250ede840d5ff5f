#include "plot/axis.h"

#include "common/text.h"

#include <algorithm>
#include <cmath>

namespace tool {

double roundStep(double least)
{
    const double power = std::pow(10, std::floor(std::log10(least)));
    for (const double factor : {1, 2, 5})
        if (factor * power >= least * (1 - 1e-9))
            return factor * power;
    return 10 * power;
}

std::string stepText(double value, double step)
{
    const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
    return format("%.*f", decimals, value + 0.0);
}

} // namespace tool

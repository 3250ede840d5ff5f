#include "model/cable.h"

#include <cmath>

namespace vmeter {

Cable cableThrough(double mhz1, double loss1, double mhz2, double loss2)
{
    Cable cable;
    if (mhz1 == mhz2) {
        cable.skin = loss1 / std::sqrt(mhz1);
        return cable;
    }
    // loss / sqrt(f) = skin + dielectric * sqrt(f) is a straight line over sqrt(f).
    const double root1 = std::sqrt(mhz1);
    const double root2 = std::sqrt(mhz2);
    cable.dielectric = (loss2 / root2 - loss1 / root1) / (root2 - root1);
    cable.skin = loss1 / root1 - cable.dielectric * root1;
    return cable;
}

double cableLossDb(const Cable& cable, double mhz)
{
    const double per100m = cable.skin * std::sqrt(mhz) + cable.dielectric * mhz;
    return cable.extraDb + per100m * cable.lengthM / 100.0;
}

} // namespace vmeter

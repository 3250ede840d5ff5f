#include "signal/optical.h"
#include "signal/decibel.h"

#include <algorithm>
#include <cmath>

namespace vmeter {
namespace {

constexpr double kFilterNm = 20.0; // to either side
constexpr double kDarkDbm = -70.0;

} // namespace

double opticalDbm(const Scene& scene, uint32_t wavelengthNm)
{
    double power = fromDb(kDarkDbm);
    for (const Light& light : scene.lights) {
        if (std::abs(light.wavelengthNm - wavelengthNm) <= kFilterNm)
            power += fromDb(light.powerDbm);
    }
    return toDb(power);
}

double dcVolt(const Input& input, const SupplyState& supply)
{
    return input.lnb.shortCircuit ? 0.0 : std::max(input.dcV, static_cast<double>(supply.ucVolt));
}

} // namespace vmeter

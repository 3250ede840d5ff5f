// Optical power behind the filter of a wavelength, and the DC voltage at an input.
#pragma once

#include "model/scene.h"
#include "signal/power_supply.h"

#include <cstdint>

namespace vmeter {

inline constexpr uint32_t kOpticalMinNm = 800;
inline constexpr uint32_t kOpticalMaxNm = 1700;

// dBm: all light within 20 nm of the wavelength, and what the dark photodiode shows.
double opticalDbm(const Scene& scene, uint32_t wavelengthNm);

// Volt at an input: the higher of what others feed into its cable and of the meter's own supply; 0 where
// the cable is shorted.
double dcVolt(const Input& input, const SupplyState& supply);

} // namespace vmeter

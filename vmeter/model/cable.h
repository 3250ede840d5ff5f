// The cable between the antenna or the outlet and the meter.
#pragma once

namespace vmeter {

// Attenuation of coaxial cable by the textbook's two terms: the skin effect of the conductors rises with
// the square root of the frequency, the loss of the dielectric with the frequency itself. Both factors are
// in dB per 100 m at 1 MHz.
struct Cable {
    double lengthM = 0.0;
    double skin = 0.0;
    double dielectric = 0.0;
    double extraDb = 0.0; // splitters, wall outlets, attenuators: the same at every frequency
};

// The cable whose data sheet states loss1 and loss2 (dB per 100 m) at mhz1 and mhz2; with one point only,
// pass it twice: all of it is then taken for skin effect. lengthM and extraDb are left at 0.
Cable cableThrough(double mhz1, double loss1, double mhz2, double loss2);

// dB at a frequency in MHz, the extra loss included.
double cableLossDb(const Cable& cable, double mhz);

} // namespace vmeter

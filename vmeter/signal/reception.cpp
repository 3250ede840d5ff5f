#include "signal/reception.h"
#include "signal/decibel.h"

#include <algorithm>
#include <cmath>

namespace vmeter {
namespace {

constexpr double kBoltzmann = 1.380649e-23; // J/K
constexpr double kRoomKelvin = 290.0;
constexpr double kOhm = 75.0;

// How far a signal may lie from the tuned frequency, as a part of its bandwidth.
constexpr double kPullIn = 0.05;

// OFDM with 6 MHz channels, 8192 points: 384 data carriers in each of 13 segments over 5.57 MHz, and a
// useful symbol of 1008 microseconds.
constexpr double kOfdmDataCarriers = 384.0 * 13.0;
constexpr double kOfdmUsefulSeconds = 1008e-6;
constexpr double kOfdmBandwidthKhz = 5570.0;

// What of a signal arrives at the antenna's end of the cable, in dB; minus infinity for nothing.
double arrivalDb(const Signal& signal, const Lnb& lnb, const SupplyState& supply)
{
    if (signal.supply == SupplyNeed::none)
        return 0.0;
    const bool toneOff = signal.tone == ToneNeed::on && !supply.tone;
    const bool toneOn = signal.tone == ToneNeed::off && supply.tone;
    if (supply.ucVolt == 0 || toneOff || toneOn)
        return kNothingDb;
    const bool crossPolar = (signal.supply == SupplyNeed::volt11 && supply.ucVolt != 11) ||
                            (signal.supply == SupplyNeed::volt15 && supply.ucVolt != 15);
    return crossPolar ? -lnb.crossPolarDb : 0.0;
}

// Part of a signal's band that lies within the tuned one, 0 to 1.
double overlap(double signalKhz, double signalBandwidth, double tunedKhz, double tunedBandwidth)
{
    const double low = std::max(signalKhz - signalBandwidth / 2.0, tunedKhz - tunedBandwidth / 2.0);
    const double high = std::min(signalKhz + signalBandwidth / 2.0, tunedKhz + tunedBandwidth / 2.0);
    return std::max(0.0, high - low) / signalBandwidth;
}

} // namespace

double thermalNoiseDbuv(double bandwidthKhz)
{
    const double watt = kBoltzmann * kRoomKelvin * bandwidthKhz * 1e3;
    return toDb(watt * kOhm / 1e-12); // volt squared over microvolt squared
}

uint32_t intermediateKhz(uint32_t ulFreq, uint32_t ulLoFreq)
{
    if (ulLoFreq == 0 || ulLoFreq == UINT32_MAX)
        return ulFreq;
    return ulFreq > ulLoFreq ? ulFreq - ulLoFreq : 0;
}

Reception receive(const Scene& scene, uint8_t ucInput, const SupplyState& supply, uint32_t ifKhz,
                  System system)
{
    const Input& input = scene.inputs[ucInput];
    const double tuned = ifKhz;
    const auto meterDbuv = [&](const Signal& signal) {
        return signal.levelDbuv + arrivalDb(signal, input.lnb, supply) -
               cableLossDb(input.cable, signal.ifKhz() / 1e3);
    };

    const Signal* wanted = nullptr;
    double wantedDbuv = kNothingDb;
    for (const Signal& signal : scene.signals) {
        if (signal.ucInput != ucInput || std::abs(signal.ifKhz() - tuned) > signal.bandwidthKhz * kPullIn)
            continue;
        const double dbuv = meterDbuv(signal);
        if (dbuv > wantedDbuv) {
            wanted = &signal;
            wantedDbuv = dbuv;
        }
    }

    const double bandwidth = wanted ? wanted->bandwidthKhz : infoOf(system).bandwidthKhz;
    double carrier = 0.0;
    double rest = fromDb(thermalNoiseDbuv(bandwidth) + scene.noiseFigureDb);
    if (wanted) {
        carrier = fromDb(wantedDbuv);
        // The noise that comes with the signal passes the cable as the signal does, but an LNB of the
        // other polarisation does not weaken its own noise.
        const double noiseDbuv = wantedDbuv - arrivalDb(*wanted, input.lnb, supply) - wanted->cnDb;
        rest += fromDb(noiseDbuv);
    }
    for (const Signal& signal : scene.signals) {
        if (signal.ucInput != ucInput || &signal == wanted)
            continue;
        const double part = overlap(signal.ifKhz(), signal.bandwidthKhz, tuned, bandwidth);
        if (part > 0.0)
            rest += fromDb(meterDbuv(signal)) * part;
    }
    return {.levelDbuv = toDb(carrier + rest), .cnDb = toDb(carrier / rest), .wanted = wanted};
}

Modulation symbolModulation(const Signal& signal)
{
    return signal.modulation == Modulation::ofdm ? signal.carriers : signal.modulation;
}

double bitRate(const Signal& signal)
{
    const double bits = infoOf(symbolModulation(signal)).bits;
    if (signal.modulation != Modulation::ofdm)
        return signal.bandwidthKhz * 1e3 * bits; // the noise bandwidth is the symbol rate
    const double guard = 1.0 / (32 >> signal.ucGuardInterval);
    return kOfdmDataCarriers * signal.bandwidthKhz / kOfdmBandwidthKhz /
           (kOfdmUsefulSeconds * (1.0 + guard)) * bits;
}

} // namespace vmeter

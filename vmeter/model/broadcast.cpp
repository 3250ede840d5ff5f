#include "model/broadcast.h"

#include <algorithm>
#include <iterator>

namespace vmeter {
namespace {

using enum Modulation;

constexpr Modulation kOfdm[] = {ofdm};
constexpr Modulation kFirstSatellite[] = {bpsk, qpsk, psk8};
constexpr Modulation kSecondSatellite[] = {qpsk, psk8, apsk16, apsk32};
constexpr Modulation kQpsk[] = {qpsk};
constexpr Modulation kQam[] = {qam64, qam256};
constexpr Modulation kQam256[] = {qam256};
constexpr Modulation kNone[] = {none};

constexpr SystemInfo kSystems[] = {
    {System::terrestrial, "terrestrial", kOfdm, 5570.0},
    {System::satellite, "satellite", kFirstSatellite, 28860.0},
    {System::satellite2, "satellite-2", kSecondSatellite, 33756.1},
    {System::catv, "catv", kQam, 5274.0},
    {System::jsat, "jsat", kQpsk, 21096.0},
    {System::jsat2, "jsat-2", kSecondSatellite, 23303.5},
    {System::skyp, "skyp", kQam256, 5274.0},
    {System::catv2, "catv-2", kQam, 5274.0},
    {System::level, "level", kNone, 200.0},
};

// Thresholds: the C/N that the usual inner code of each modulation needs.
constexpr ModulationInfo kModulations[] = {
    {none, "none", 0, 0.0},      {ofdm, "OFDM", 0, 0.0},    {bpsk, "BPSK", 1, 2.0},
    {qpsk, "QPSK", 2, 5.0},      {psk8, "8PSK", 3, 10.0},   {apsk16, "16APSK", 4, 12.0},
    {apsk32, "32APSK", 5, 15.0}, {qam16, "16QAM", 4, 12.0}, {qam64, "64QAM", 6, 19.0},
    {qam256, "256QAM", 8, 27.0},
};

} // namespace

std::span<const SystemInfo> systems()
{
    return kSystems;
}

std::span<const ModulationInfo> modulations()
{
    return kModulations;
}

const SystemInfo* findSystem(uint16_t usBdSys)
{
    const auto* found = std::ranges::find(kSystems, static_cast<System>(usBdSys), &SystemInfo::system);
    return found == std::end(kSystems) ? nullptr : found;
}

const SystemInfo& infoOf(System system)
{
    return *std::ranges::find(kSystems, system, &SystemInfo::system);
}

const ModulationInfo& infoOf(Modulation modulation)
{
    return *std::ranges::find(kModulations, modulation, &ModulationInfo::modulation);
}

uint16_t modulationBit(System system, Modulation modulation)
{
    switch (modulation) {
    case none:
        return 8192;
    case ofdm:
        return 1;
    case bpsk:
        return 2;
    case qpsk:
        return 8;
    case psk8:
        return system == System::satellite ? 16 : 32;
    case apsk16:
        return 64;
    case apsk32:
        return 128;
    case qam16:
        return 0;
    case qam64:
        return 1024;
    case qam256:
        return 4096;
    }
    return 0;
}

uint16_t modulationBits(System system)
{
    unsigned bits = 0;
    for (const Modulation modulation : infoOf(system).modulations)
        bits |= modulationBit(system, modulation);
    return static_cast<uint16_t>(bits);
}

} // namespace vmeter

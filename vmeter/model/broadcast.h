// Broadcast systems and modulations: their names in a scene, their codes on the wire.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace vmeter {

// The value is the code of the settings tables and of usBdSys and bdSys.
enum class System : uint16_t {
    terrestrial = 0, // OFDM, 6 MHz channels; also where a cable network passes it on
    satellite = 1,   // BS/CS, first generation
    satellite2 = 2,  // BS/CS, second generation
    catv = 3,        // QAM, 6 MHz
    jsat = 4,        // QPSK
    jsat2 = 5,       // up to 32APSK
    skyp = 6,        // 256QAM band
    catv2 = 9,       // QAM, variant
    level = 10       // carriers of which only the level is measured: FM, LTE, pilot, up-stream
};

enum class Modulation : uint8_t { none, ofdm, bpsk, qpsk, psk8, apsk16, apsk32, qam16, qam64, qam256 };

struct SystemInfo {
    System system;
    std::string_view name;
    std::span<const Modulation> modulations;
    double bandwidthKhz; // measuring bandwidth where no signal is found; default of a signal's own
};

struct ModulationInfo {
    Modulation modulation;
    std::string_view name;
    uint8_t bits;       // per symbol; 0 for none and OFDM, whose carriers tell
    double thresholdDb; // C/N from which a demodulator locks
};

std::span<const SystemInfo> systems();
std::span<const ModulationInfo> modulations();
const SystemInfo* findSystem(uint16_t usBdSys); // null: no such code
const SystemInfo& infoOf(System system);
const ModulationInfo& infoOf(Modulation modulation);

// The bit of a modulation in usMod and MOD. 8PSK has one of the first and one of the second generation of
// satellite systems; 16QAM, which only OFDM carriers use, has none: 0.
uint16_t modulationBit(System system, Modulation modulation);

// All bits that a signal of the system can have.
uint16_t modulationBits(System system);

} // namespace vmeter

#include "measure/limits.h"

#include "common/failure.h"
#include "common/names.h"
#include "common/text.h"
#include "measure/frequency.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <utility>

namespace tool {

namespace {

struct System {
    uint16_t code;
    uint16_t modulations;
};

constexpr uint16_t kSecondGeneration = VX63_MOD_QPSK | VX63_MOD_8PSK | VX63_MOD_16APSK | VX63_MOD_32APSK;
constexpr uint16_t kQam = VX63_MOD_64QAM | VX63_MOD_256QAM;

constexpr System kSystems[] = {
    {VX63_BDSYS_TERRESTRIAL, VX63_MOD_OFDM},
    {VX63_BDSYS_SATELLITE, VX63_MOD_BPSK | VX63_MOD_QPSK | VX63_MOD_8PSK_SATELLITE},
    {VX63_BDSYS_SATELLITE_2, kSecondGeneration},
    {VX63_BDSYS_CATV, kQam},
    {VX63_BDSYS_JSAT, VX63_MOD_QPSK},
    {VX63_BDSYS_JSAT_2, kSecondGeneration},
    {VX63_BDSYS_SKYP, VX63_MOD_256QAM},
    {VX63_BDSYS_CATV_2, kQam},
    {VX63_BDSYS_LEVEL, VX63_MOD_NONE},
};

// 0 where the system is not known.
uint16_t modulationsOf(uint16_t usBdSys)
{
    const auto* found = std::ranges::find(kSystems, usBdSys, &System::code);
    return found == std::end(kSystems) ? uint16_t{0} : found->modulations;
}

std::string modulationText(uint16_t bits)
{
    std::string text;
    for (uint32_t rest = bits; rest != 0; rest &= rest - 1) {
        const uint32_t bit = uint32_t{1} << std::countr_zero(rest);
        const auto name = modulationName(bit);
        text += (text.empty() ? "" : ", ") + (name ? std::string(*name) : format("0x%04X", bit));
    }
    return text.empty() ? "any" : text;
}

std::string systemText(uint16_t usBdSys)
{
    const auto name = systemName(usBdSys);
    return name ? std::string(*name) : format("%u", usBdSys);
}

bool hasOscillator(const MeasCondition& condition)
{
    return condition.ulLoFreq != 0 && condition.ulLoFreq != UINT32_MAX;
}

std::string tunerText()
{
    return inMhz(kTunerKhz.lowest) + ".." + megahertz(kTunerKhz.highest);
}

} // namespace

uint32_t tunerKhz(const MeasCondition& condition)
{
    if (!hasOscillator(condition))
        return condition.ulFreq;
    return condition.ulFreq > condition.ulLoFreq ? condition.ulFreq - condition.ulLoFreq : 0;
}

std::optional<Refusal> refusalOf(const MeasCondition& condition)
{
    const uint32_t khz = tunerKhz(condition);
    const std::string frequency = megahertz(condition.ulFreq);
    if (khz == 0)
        return Refusal{"--lo", "lo_khz",
                       "the local oscillator, " + megahertz(condition.ulLoFreq) +
                           ", is not below the frequency, " + frequency};
    if (khz < kTunerKhz.lowest || khz > kTunerKhz.highest) {
        std::string why = frequency;
        if (hasOscillator(condition))
            why += " less the local oscillator, " + megahertz(condition.ulLoFreq) + ", is " + megahertz(khz) +
                   ",";
        else
            why += " is";
        why += " outside " + tunerText() + " of the tuner";
        if (!hasOscillator(condition) && khz > kTunerKhz.highest)
            why += "; a satellite's needs the local oscillator of the LNB";
        if (!hasOscillator(condition) && khz < kTunerKhz.lowest)
            why += "; a number without a unit is in kHz";
        return Refusal{"--freq", "frequency_khz", why};
    }
    const uint16_t modulations = modulationsOf(condition.usBdSys);
    if (condition.usMod != 0 && modulations != 0 && (condition.usMod & modulations) == 0)
        return Refusal{"--mod", "modulation",
                       modulationText(condition.usMod) + " is no modulation of " +
                           systemText(condition.usBdSys) + ", which has " + modulationText(modulations)};
    return std::nullopt;
}

Running startWith(const MeasCondition& values, const std::string& name, const Running::Call& start,
                  Running::Call stop)
{
    const std::string words = "frequency " + megahertz(values.ulFreq) + ", local oscillator " +
                              (hasOscillator(values) ? megahertz(values.ulLoFreq) : "none") + ", system " +
                              systemText(values.usBdSys) + format(", band %u, modulation ", values.usBand) +
                              modulationText(values.usMod) +
                              format(", condition 0x%04X, supply %d", values.usCondition, values.powerSupply);
    return startWith(words, name, start, std::move(stop));
}

Running startWith(const std::string& values, const std::string& name, const Running::Call& start,
                  Running::Call stop, bool inSteps)
{
    try {
        return Running(name, start, std::move(stop), inSteps);
    } catch (const Failure& failure) {
        if (failure.code() != kExitArgument)
            throw;
        throw Failure(
            kExitArgument, "cannot start " + name, "the meter refuses a value of " + values,
            "all are within the ranges that are known (vx63-measure(1), RANGES); 'vx63 log' shows what "
            "was sent");
    }
}

} // namespace tool

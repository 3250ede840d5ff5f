// Whether a channel is good, by the meter's table of thresholds (settings file 4).
#pragma once

#include "libvx63.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tool {

// A record of VX63_SET_FILE_THRD. Levels and ratios in tenths; a bit error rate is MAN/100 * 10^EXP.
// Low and high are the edges of what is wanted; min and max are the ends of the meter's scales.
struct Threshold {
    uint8_t BAND;
    uint8_t SPEC; // broadcast system
    uint8_t reserved[2];
    uint32_t MODULATION; // bits; 0: any
    int32_t LV_MIN, LV_LOW, LV_HIGH, LV_MAX;
    uint32_t MER_MIN, MER_LOW, MER_HIGH, MER_MAX;
    uint32_t BER_MIN_MAN;
    int32_t BER_MIN_EXP;
    uint32_t BER_LOW_MAN;
    int32_t BER_LOW_EXP;
    uint32_t BER_HIGH_MAN;
    int32_t BER_HIGH_EXP;
    uint32_t BER_MAX_MAN;
    int32_t BER_MAX_EXP;
    uint32_t CN_MIN, CN_LOW, CN_HIGH, CN_MAX;
};
static_assert(sizeof(Threshold) == 88);

enum class Verdict { none, pass, marginal, fail }; // the worse, the later

const char* verdictName(Verdict verdict); // null for none

// What a value is held against; nothing where it does not bound.
struct Bounds {
    std::optional<double> failBelow = {};
    std::optional<double> marginalBelow = {};
    std::optional<double> marginalAbove = {};
    std::optional<double> failAbove = {};
    bool ofPlan = false; // of a survey; else of the thresholds

    bool areNone() const { return !failBelow && !marginalBelow && !marginalAbove && !failAbove; }
};

// None where nothing bounds.
Verdict judged(double value, const Bounds& bounds);

// Of a channel: in dBuV, in dB, and erroneous bits over bits.
struct ChannelBounds {
    Bounds level, cnr, mer, ber;
};

struct Judgement {
    Verdict level = Verdict::none;
    Verdict cnr = Verdict::none;
    Verdict mer = Verdict::none;
    Verdict ber = Verdict::none;
    Verdict whole = Verdict::none;
    bool unrecognised = false; // as strong as a wanted signal, and not demodulated
};

// From the settings file, or the factory table where it is missing. Throws Failure where it is broken.
std::vector<Threshold> readThresholds();

// The same, but none and a complaint where it is broken.
std::vector<Threshold> readThresholdsIfAny();

// The threshold for the band, system and modulation, of the signal when it is locked; null where there is
// none. Without a band (0) the first threshold of the system counts.
const Threshold* thresholdOf(const std::vector<Threshold>& thresholds, const MeasCondition& condition,
                             const MultiMeasResult& result);

// By that threshold; nothing where there is none.
std::optional<ChannelBounds> boundsOf(const std::vector<Threshold>& thresholds,
                                      const MeasCondition& condition, const MultiMeasResult& result);

// No verdict where there is no signal, or nothing to hold it against. What is there without lock, at or above
// the lowest wanted level, is unrecognised: another system or modulation, or a signal elsewhere in the band.
// Of a level carrier nothing is to be recognised.
//   merDb  the modulation error ratio, where it has been measured
Judgement judgeBy(const std::optional<ChannelBounds>& bounds, const MeasCondition& condition,
                  const MultiMeasResult& result, std::optional<double> merDb = std::nullopt);
Judgement judge(const std::vector<Threshold>& thresholds, const MeasCondition& condition,
                const MultiMeasResult& result);

} // namespace tool

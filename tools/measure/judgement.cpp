#include "measure/judgement.h"

#include "common/failure.h"
#include "common/output.h"
#include "settings/file.h"

#include <algorithm>
#include <cmath>

namespace tool {

namespace {

double rateOf(uint32_t mantissa, int32_t exponent)
{
    return mantissa / 100.0 * std::pow(10, exponent);
}

// A ratio that is not judged has no high edge.
Bounds ratioBounds(uint32_t low, uint32_t high)
{
    return high == 0 ? Bounds{} : Bounds{.failBelow = low / 10.0, .marginalBelow = high / 10.0};
}

} // namespace

const char* verdictName(Verdict verdict)
{
    switch (verdict) {
    case Verdict::pass:
        return "pass";
    case Verdict::marginal:
        return "marginal";
    case Verdict::fail:
        return "fail";
    case Verdict::none:
        break;
    }
    return nullptr;
}

std::vector<Threshold> readThresholds()
{
    return recordsOrFactory<Threshold>(VX63_SET_FILE_THRD);
}

std::vector<Threshold> readThresholdsIfAny()
try {
    return readThresholds();
} catch (const Failure& failure) {
    complain(failure.what());
    return {};
}

Verdict judged(double value, const Bounds& bounds)
{
    if (bounds.areNone())
        return Verdict::none;
    const auto& [failBelow, marginalBelow, marginalAbove, failAbove, ofPlan] = bounds;
    if ((failBelow && value < *failBelow) || (failAbove && value > *failAbove))
        return Verdict::fail;
    return (marginalBelow && value < *marginalBelow) || (marginalAbove && value > *marginalAbove)
               ? Verdict::marginal
               : Verdict::pass;
}

const Threshold* thresholdOf(const std::vector<Threshold>& thresholds, const MeasCondition& condition,
                             const MultiMeasResult& result)
{
    const uint16_t system = result.lock != 0 ? result.bdSys : condition.usBdSys;
    const uint32_t modulation = result.lock != 0 ? result.MOD : condition.usMod;
    for (const Threshold& threshold : thresholds)
        if ((threshold.BAND == condition.usBand || condition.usBand == 0) && threshold.SPEC == system &&
            (threshold.MODULATION == 0 || modulation == 0 || (threshold.MODULATION & modulation) != 0))
            return &threshold;
    return nullptr;
}

std::optional<ChannelBounds> boundsOf(const std::vector<Threshold>& thresholds,
                                      const MeasCondition& condition, const MultiMeasResult& result)
{
    const Threshold* threshold = thresholdOf(thresholds, condition, result);
    if (threshold == nullptr)
        return std::nullopt;
    ChannelBounds bounds;
    bounds.level = {.failBelow = threshold->LV_LOW / 10.0, .failAbove = threshold->LV_HIGH / 10.0};
    bounds.cnr = ratioBounds(threshold->CN_LOW, threshold->CN_HIGH);
    bounds.mer = ratioBounds(threshold->MER_LOW, threshold->MER_HIGH);
    if (threshold->BER_LOW_MAN != 0)
        bounds.ber = {.marginalAbove = rateOf(threshold->BER_HIGH_MAN, threshold->BER_HIGH_EXP),
                      .failAbove = rateOf(threshold->BER_LOW_MAN, threshold->BER_LOW_EXP)};
    return bounds;
}

Judgement judgeBy(const std::optional<ChannelBounds>& bounds, const MeasCondition& condition,
                  const MultiMeasResult& result, std::optional<double> merDb)
{
    const bool signal = (result.stat & VX63_STAT_SIGNAL) != 0;
    const bool needsLock = condition.usBdSys != VX63_BDSYS_LEVEL;
    const double level = result.LEVEL / 10.0;
    Judgement judgement;
    judgement.unrecognised = needsLock && result.lock == 0 &&
                             (bounds && bounds->level.failBelow ? level >= *bounds->level.failBelow : signal);
    if (!bounds || !signal)
        return judgement;
    judgement.level = judged(level, bounds->level);
    if (result.lock != 0) {
        judgement.cnr = judged(result.CNR / 10.0, bounds->cnr);
        if (merDb)
            judgement.mer = judged(*merDb, bounds->mer);
        if (result.BER_TOTAL != 0)
            judgement.ber = judged(static_cast<double>(result.BER_ERR) / result.BER_TOTAL, bounds->ber);
    }
    judgement.whole = std::max({judgement.level, judgement.cnr, judgement.mer, judgement.ber});
    if (result.lock == 0 && needsLock)
        judgement.whole = Verdict::fail;
    return judgement;
}

Judgement judge(const std::vector<Threshold>& thresholds, const MeasCondition& condition,
                const MultiMeasResult& result)
{
    return judgeBy(boundsOf(thresholds, condition, result), condition, result);
}

} // namespace tool

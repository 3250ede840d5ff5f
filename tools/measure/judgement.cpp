#include "measure/judgement.h"

#include "common/failure.h"
#include "common/output.h"
#include "settings/file.h"

#include <algorithm>
#include <cmath>

namespace tool {

namespace {

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

double rateOf(uint32_t mantissa, int32_t exponent)
{
    return mantissa / 100.0 * std::pow(10, exponent);
}

Verdict judgeLevel(const Threshold& threshold, uint32_t LEVEL)
{
    const auto level = static_cast<int64_t>(LEVEL);
    return level >= threshold.LV_LOW && level <= threshold.LV_HIGH ? Verdict::pass : Verdict::fail;
}

Verdict judgeRatio(const Threshold& threshold, uint32_t CNR)
{
    if (threshold.CN_HIGH == 0)
        return Verdict::none;
    return CNR < threshold.CN_LOW    ? Verdict::fail
           : CNR < threshold.CN_HIGH ? Verdict::marginal
                                     : Verdict::pass;
}

Verdict judgeErrors(const Threshold& threshold, const MultiMeasResult& result)
{
    if (threshold.BER_LOW_MAN == 0 || result.BER_TOTAL == 0)
        return Verdict::none;
    const double rate = static_cast<double>(result.BER_ERR) / result.BER_TOTAL;
    return rate > rateOf(threshold.BER_LOW_MAN, threshold.BER_LOW_EXP)     ? Verdict::fail
           : rate > rateOf(threshold.BER_HIGH_MAN, threshold.BER_HIGH_EXP) ? Verdict::marginal
                                                                           : Verdict::pass;
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

Judgement judge(const std::vector<Threshold>& thresholds, const MeasCondition& condition,
                const MultiMeasResult& result)
{
    const Threshold* threshold = thresholdOf(thresholds, condition, result);
    const bool signal = (result.stat & VX63_STAT_SIGNAL) != 0;
    const bool needsLock = condition.usBdSys != VX63_BDSYS_LEVEL;
    const bool strong =
        threshold == nullptr ? signal : static_cast<int64_t>(result.LEVEL) >= threshold->LV_LOW;
    Judgement judgement;
    judgement.unrecognised = strong && needsLock && result.lock == 0;
    if (threshold == nullptr || !signal)
        return judgement;
    judgement.level = judgeLevel(*threshold, result.LEVEL);
    if (result.lock != 0) {
        judgement.cnr = judgeRatio(*threshold, result.CNR);
        judgement.ber = judgeErrors(*threshold, result);
    }
    judgement.whole = std::max({judgement.level, judgement.cnr, judgement.ber});
    if (result.lock == 0 && needsLock)
        judgement.whole = Verdict::fail;
    return judgement;
}

} // namespace tool

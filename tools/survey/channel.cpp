#include "survey/channel.h"

#include "common/interrupt.h"
#include "common/text.h"
#include "measure/channel_options.h"
#include "measure/modulation_error.h"
#include "measure/points.h"
#include "measure/profile.h"
#include "measure/reading.h"
#include "measure/single_measurement.h"

#include <chrono>
#include <iterator>
#include <memory>
#include <utility>

namespace tool {

namespace {

using std::chrono::milliseconds;

constexpr uint16_t kPoints = 1000;        // for the modulation error ratio
constexpr milliseconds kSignalTime{2000}; // in which an unexpected channel has to show a signal

// What is measured of a channel while it is tuned: values, and points where it locks.
void measureValues(const SurveyTask& task, const ChannelOptions& options,
                   const std::vector<Threshold>& thresholds, SurveyReading& one, Progress& progress)
{
    SingleMeasurement measurement(options, thresholds);
    one.reading =
        measurement.readLocked(progress, task.channel->expected ? std::nullopt : std::optional(kSignalTime));
    if (one.reading.result.lock != 0 && needsLock(options.condition) && interruption() == 0) {
        Constellation constellation = readPoints(measurement, options.ucDispType, kPoints, progress);
        one.reading = constellation.reading;
        const MultiMeasResult& result = one.reading.result;
        const auto& points = constellation.points;
        if (points.size() < kPoints)
            one.trouble = format("the lock was lost after %zu of %u points", points.size(), kPoints);
        else if (const auto ideal = idealPoints(result.MOD, points, result.CNR / 10.0))
            one.merDb = shownRatio(points, *ideal);
        if (task.orders->constellation)
            one.constellation = std::move(constellation.points);
    }
    measurement.stop();
}

void measureProfile(const ChannelOptions& options, SurveyReading& one, Progress& progress)
{
    if (const std::unique_ptr<DlyPrfResult> profile = readProfile(options, progress))
        one.delayProfile.assign(std::begin(profile->ucDlyPrfData), std::end(profile->ucDlyPrfData));
    else if (one.trouble.empty())
        one.trouble =
            format("no delay profile within %g s", static_cast<double>(options.lockTimeoutMs) / 1000);
}

// By the meter's thresholds, with what the plan says in place of them.
void judge(const SurveyTask& task, const std::vector<Threshold>& thresholds, SurveyReading& one)
{
    Reading& reading = one.reading;
    auto bounds = boundsOf(thresholds, reading.condition, reading.result);
    const PlanLimits& limits = task.orders->limits;
    for (const Quantity& quantity : kQuantities)
        if (const auto& planned = limits.*quantity.planned) {
            if (!bounds)
                bounds.emplace();
            *bounds.*quantity.bounds = *planned;
        }
    one.bounds = bounds.value_or(ChannelBounds{});
    reading.judgement = judgeBy(bounds, reading.condition, reading.result, one.merDb);
}

int rankOf(const SurveyReading& one)
{
    return one.reading.result.lock != 0 ? 2 : hasSignal(one.reading.result) ? 1 : 0;
}

} // namespace

std::optional<SurveyReading> measureChannel(const SurveyTask& task, const std::vector<Threshold>& thresholds,
                                            int64_t lockTimeoutMs, Progress& progress)
{
    std::optional<SurveyReading> best;
    for (const MeasCondition& way : task.channel->ways) {
        ChannelOptions options;
        options.condition = way;
        options.lockTimeoutMs = lockTimeoutMs;
        SurveyReading one;
        one.point = task.point->name;
        one.list = task.list->name;
        measureValues(task, options, thresholds, one, progress);
        if (task.orders->delayProfile && way.usBdSys == VX63_BDSYS_TERRESTRIAL && rankOf(one) == 2 &&
            interruption() == 0)
            measureProfile(options, one, progress);
        if (interruption() != 0)
            return std::nullopt;
        one.reading.channel = task.channel->name;
        if (!one.reading.input)
            one.reading.input = task.list->input; // the meter did not tell
        judge(task, thresholds, one);
        if (!best || rankOf(one) > rankOf(*best))
            best = std::move(one);
        if (rankOf(*best) == 2)
            break;
    }
    return best;
}

} // namespace tool

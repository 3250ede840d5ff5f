#include "survey/outcome.h"

#include "survey/results.h"

#include <algorithm>

namespace tool {

namespace {

const SurveyReading* readingOf(const SurveyResults& results, const SurveyPoint& point, const SurveyList& list,
                               const SurveyChannel& channel)
{
    const auto found = std::ranges::find_if(results.readings, [&](const SurveyReading& reading) {
        return isReadingOf(reading, point, list, channel);
    });
    return found == results.readings.end() ? nullptr : &*found;
}

ListOutcome outcomeOf(const SurveyResults& results, const SurveyPoint& point, const SurveyList& list)
{
    ListOutcome outcome{&list, {}, {}, "", "", Verdict::none};
    const SurveyReading* strongest = nullptr;
    const SurveyReading* weakest = nullptr;
    size_t locked = 0;
    for (const SurveyChannel& channel : list.channels) {
        const SurveyReading* const measured = readingOf(results, point, list, channel);
        outcome.channels.push_back(outcomeOf(channel, measured));
        if (measured == nullptr || !hasSignal(measured->reading.result) ||
            (measured->reading.result.lock == 0 && needsLock(measured->reading.condition)))
            continue;
        ++locked;
        const uint32_t level = measured->reading.result.LEVEL;
        if (strongest == nullptr || level > strongest->reading.result.LEVEL)
            strongest = measured;
        if (weakest == nullptr || level < weakest->reading.result.LEVEL)
            weakest = measured;
    }
    if (locked > 1) {
        outcome.slopeDb = (strongest->reading.result.LEVEL - weakest->reading.result.LEVEL) / 10.0;
        outcome.strongest = strongest->reading.channel;
        outcome.weakest = weakest->reading.channel;
        outcome.slope = judged(*outcome.slopeDb, list.slope);
    }
    return outcome;
}

void count(Counts& counts, const ChannelOutcome& channel)
{
    ++counts.all;
    counts.measured += channel.reading != nullptr;
    counts.passed += channel.verdict == Verdict::pass;
    counts.marginal += channel.verdict == Verdict::marginal;
    counts.failed += channel.verdict == Verdict::fail;
}

} // namespace

ChannelOutcome outcomeOf(const SurveyChannel& channel, const SurveyReading* measured)
{
    ChannelOutcome outcome{&channel, measured, Verdict::none, ""};
    if (measured == nullptr)
        return outcome;
    const Reading& reading = measured->reading;
    outcome.verdict = reading.judgement.whole;
    outcome.why = verdictReasons(reading);
    if (!hasSignal(reading.result)) {
        outcome.verdict = channel.expected ? Verdict::fail : Verdict::none;
        outcome.why = reading.judgement.unrecognised ? "not recognised" : "no signal";
    } else if (channel.expected && reading.result.lock == 0 && needsLock(reading.condition)) {
        outcome.verdict = Verdict::fail; // without any limit as well
        if (outcome.why.empty())
            outcome.why = "no lock";
    }
    return outcome;
}

SurveyOutcome outcomeOf(const SurveyResults& results)
{
    SurveyOutcome outcome{{}, {}, Verdict::none};
    for (const SurveyPoint& point : results.survey.points) {
        PointOutcome one{&point, {}, {}, Verdict::none};
        for (const SurveyList& list : point.lists) {
            one.lists.push_back(outcomeOf(results, point, list));
            one.verdict = std::max(one.verdict, one.lists.back().slope);
            for (const ChannelOutcome& channel : one.lists.back().channels) {
                count(one.counts, channel);
                count(outcome.counts, channel);
                one.verdict = std::max(one.verdict, channel.verdict);
            }
        }
        outcome.verdict = std::max(outcome.verdict, one.verdict);
        outcome.points.push_back(std::move(one));
    }
    return outcome;
}

} // namespace tool

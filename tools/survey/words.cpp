#include "survey/words.h"

#include "common/clock.h"
#include "common/numbers.h"
#include "common/text.h"

#include <algorithm>
#include <ctime>

namespace tool {

namespace {

std::string timeText(int64_t timeMs, const char* pattern)
{
    const tm local = localTime(timeMs / 1000);
    char text[64];
    return {text, std::strftime(text, sizeof text, pattern, &local)};
}

// The number that the name is, if it is one.
std::optional<uint64_t> numberOf(const std::string& name)
{
    return name.starts_with('0') ? std::nullopt : parseNumber(name);
}

} // namespace

const char* verdictWord(Verdict verdict)
{
    const char* const name = verdictName(verdict);
    return name != nullptr ? name : "not judged";
}

const char* verdictWord(const ChannelOutcome& channel)
{
    if (channel.reading == nullptr)
        return "not measured";
    if (isSilent(channel))
        return "no signal";
    return verdictWord(channel.verdict);
}

std::string verdictText(Verdict verdict, const std::string& why)
{
    if (why.empty())
        return verdictWord(verdict);
    return verdict == Verdict::none ? why : verdictWord(verdict) + (": " + why);
}

std::string verdictText(const ChannelOutcome& channel)
{
    return channel.reading == nullptr ? verdictWord(channel) : verdictText(channel.verdict, channel.why);
}

bool isSilent(const ChannelOutcome& channel)
{
    return channel.reading == nullptr ||
           (channel.verdict == Verdict::none && !hasSignal(channel.reading->reading.result) &&
            !channel.reading->reading.judgement.unrecognised);
}

std::string namesText(const std::vector<std::string>& names)
{
    std::string text;
    for (size_t i = 0; i < names.size();) {
        size_t end = i + 1;
        if (const auto first = numberOf(names[i]))
            while (end < names.size() && numberOf(names[end]) == *first + (end - i))
                ++end;
        if (end - i < 3)
            end = i + 1;
        text += (text.empty() ? "" : ", ") + names[i] + (end - i > 1 ? "-" + names[end - 1] : "");
        i = end;
    }
    return text;
}

std::string missingText(const Counts& counts)
{
    return format("%zu of %zu channels %s not measured", counts.all - counts.measured, counts.all,
                  counts.all - counts.measured == 1 ? "is" : "are");
}

std::string summaryText(const SurveyOutcome& outcome)
{
    const Counts& counts = outcome.counts;
    std::string text = std::string(verdictWord(outcome.verdict)) + ": " +
                       (counts.measured == counts.all ? format("complete, %zu channels", counts.all)
                                                      : "incomplete, " + missingText(counts));
    const std::pair<size_t, const char*> parts[] = {{counts.passed, "pass"},
                                                    {counts.marginal, "marginal"},
                                                    {counts.failed, "fail"},
                                                    {counts.unjudged(), "not judged"}};
    const char* separator = ": ";
    for (const auto& [number, word] : parts)
        if (number > 0) {
            text += separator + format("%zu %s", number, word);
            separator = ", ";
        }
    return text;
}

std::string momentText(int64_t timeMs)
{
    return timeText(timeMs, "%Y-%m-%d %H:%M:%S %Z");
}

std::string isoTime(int64_t timeMs)
{
    std::string text = timeText(timeMs, "%Y-%m-%dT%H:%M:%S%z");
    return text.insert(text.size() - 2, ":");
}

Times timesOf(const SurveyResults& results)
{
    Times times{results.survey.timeMs, results.survey.timeMs};
    if (!results.readings.empty()) {
        const auto [first, last] = std::ranges::minmax_element(
            results.readings, {}, [](const SurveyReading& one) { return one.reading.timeMs; });
        times = {first->reading.timeMs, last->reading.timeMs};
    }
    return times;
}

} // namespace tool

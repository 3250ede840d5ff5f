// The survey as the tests of a build server: a channel is a test case.
#include "common/clock.h"
#include "common/markup.h"
#include "common/text.h"
#include "measure/frequency.h"
#include "survey/reports.h"
#include "survey/words.h"

#include <algorithm>

namespace tool {

namespace {

struct Cases {
    size_t tests = 0;
    size_t failures = 0;
    size_t skipped = 0;
    Markup markup;

    //   why  "level, C/N"; of what is skipped, why it is
    void add(const std::string& group, const std::string& name, Verdict verdict, const std::string& why)
    {
        const std::string text = verdictText(verdict, why);
        ++tests;
        failures += verdict == Verdict::fail;
        skipped += verdict == Verdict::none;
        const Markup told = verdict == Verdict::fail       ? element("failure", text, {{"message", text}})
                            : verdict == Verdict::none     ? element("skipped", {}, {{"message", why}})
                            : verdict == Verdict::marginal ? element("system-out", text)
                                                           : Markup();
        markup += block("testcase", told, {{"classname", group}, {"name", name}, {"time", "0"}});
    }
};

std::string valuesText(const SurveyReading& one)
{
    const MultiMeasResult& result = one.reading.result;
    return " (level " + tenths(result.LEVEL) + " dBuV, C/N " + tenths(result.CNR) + " dB, " +
           (one.merDb ? format("MER %.1f dB, ", *one.merDb) : "") + "BER " + bitErrorRateText(result) + ")";
}

Markup suite(const SurveyResults& results, const std::string& site, const PointOutcome& point, Cases& all)
{
    Cases cases;
    Times times{0, 0};
    for (const ListOutcome& list : point.lists) {
        const std::string group = site + "." + point.point->name + "." + list.list->name;
        for (const ChannelOutcome& channel : list.channels) {
            const std::string name =
                channel.channel->name + " (" + megahertz(channel.channel->frequencyKhz) + ")";
            if (channel.reading != nullptr) {
                const int64_t time = channel.reading->reading.timeMs;
                times.firstMs = times.firstMs == 0 ? time : std::min(times.firstMs, time);
                times.lastMs = std::max(times.lastMs, time);
            }
            const std::string word = verdictWord(channel);
            cases.add(group, name, channel.verdict,
                      channel.verdict != Verdict::none ? channel.why + valuesText(*channel.reading)
                      : word == "no signal"            ? "no signal, not expected"
                                                       : word);
        }
        if (!list.list->slope.areNone())
            cases.add(group, "slope", list.slope,
                      list.slopeDb
                          ? format("%.1f dB from ", *list.slopeDb) + list.strongest + " to " + list.weakest
                          : "not measured");
    }
    all.tests += cases.tests;
    all.failures += cases.failures;
    all.skipped += cases.skipped;
    return block("testsuite", Markup::raw("\n") + cases.markup,
                 {{"name", point.point->name},
                  {"timestamp", isoTime(times.firstMs == 0 ? results.survey.timeMs : times.firstMs)},
                  {"time", format("%.3f", static_cast<double>(times.lastMs - times.firstMs) / 1000)},
                  {"tests", format("%zu", cases.tests)},
                  {"failures", format("%zu", cases.failures)},
                  {"errors", "0"},
                  {"skipped", format("%zu", cases.skipped)}});
}

} // namespace

std::string junitXml(const SurveyResults& results, const SurveyOutcome& outcome)
{
    Cases all;
    Markup suites = Markup::raw("\n");
    for (const PointOutcome& point : outcome.points)
        suites += suite(results, results.survey.site, point, all);
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + block("testsuites", suites,
                                                                  {{"name", results.survey.site},
                                                                   {"tests", format("%zu", all.tests)},
                                                                   {"failures", format("%zu", all.failures)},
                                                                   {"errors", "0"},
                                                                   {"skipped", format("%zu", all.skipped)}})
                                                                .text();
}

} // namespace tool

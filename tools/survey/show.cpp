#include "survey/show.h"

#include "common/text.h"
#include "survey/words.h"

#include <algorithm>

namespace tool {

namespace {

constexpr size_t kWorst = 5; // as many are named in the summary

const char* const kAlignment = "<>>>>>";

Cell verdictCell(Verdict verdict, const std::string& why)
{
    return {verdictText(verdict, why), verdict == Verdict::fail       ? Tint::bad
                                       : verdict == Verdict::marginal ? Tint::doubtful
                                       : verdict == Verdict::pass     ? Tint::good
                                                                      : Tint::none};
}

std::string mhzOf(uint32_t khz)
{
    return format("%.3f", khz / 1000.0);
}

std::string countsText(const Counts& counts)
{
    std::string text = format("%zu of %zu: %zu pass", counts.measured, counts.all, counts.passed);
    const auto add = [&](size_t count, const char* what) {
        if (count > 0)
            text += format(", %zu %s", count, what);
    };
    add(counts.marginal, "marginal");
    add(counts.failed, "fail");
    add(counts.unjudged(), "not judged");
    return text;
}

Json countsJson(const Counts& counts)
{
    return {{"channels", counts.all},      {"measured", counts.measured}, {"passed", counts.passed},
            {"marginal", counts.marginal}, {"failed", counts.failed},     {"unjudged", counts.unjudged()}};
}

} // namespace

ChannelLines::ChannelLines(const SurveyList& list) : m_list(list), m_rows(widest(list), kAlignment) {}

Table ChannelLines::widest(const SurveyList& list)
{
    Table rows = {{list.name, "MHz", "dBuV", "C/N dB", "MER dB", "< 1.0e-06", "fail: level, C/N, MER, BER"}};
    for (const SurveyChannel& channel : list.channels)
        rows.push_back({channel.name, mhzOf(channel.frequencyKhz)});
    return rows;
}

std::string ChannelLines::header() const
{
    return m_rows.row({m_list.name, "MHz", "dBuV", "C/N dB", "MER dB", "BER", "Verdict"});
}

std::string ChannelLines::line(const ChannelOutcome& outcome) const
{
    const SurveyReading& one = *outcome.reading;
    const MultiMeasResult& result = one.reading.result;
    return m_rows.row({outcome.channel->name, mhzOf(one.reading.condition.ulFreq), tenths(result.LEVEL),
                       hasSignal(result) ? tenths(result.CNR) : "-",
                       one.merDb ? format("%.1f", *one.merDb) : "-", bitErrorRateText(result),
                       verdictCell(outcome.verdict, outcome.why)});
}

std::vector<std::string> worstOf(const SurveyOutcome& outcome)
{
    std::vector<std::string> worst;
    for (const Verdict verdict : {Verdict::fail, Verdict::marginal})
        for (const PointOutcome& point : outcome.points)
            for (const ListOutcome& list : point.lists) {
                for (const ChannelOutcome& channel : list.channels)
                    if (channel.verdict == verdict)
                        worst.push_back(point.point->name + ", " + channel.channel->name + ": " +
                                        verdictText(verdict, channel.why));
                if (list.slope == verdict)
                    worst.push_back(point.point->name + ", " + list.list->name + ": " +
                                    verdictText(verdict, format("slope %.1f dB, ", *list.slopeDb) +
                                                             list.strongest + " against " + list.weakest));
            }
    return worst;
}

std::string missingOf(const SurveyOutcome& outcome)
{
    std::string text;
    for (const PointOutcome& point : outcome.points)
        if (const Counts& counts = point.counts; counts.measured < counts.all)
            text += (text.empty() ? "" : ", ") + point.point->name +
                    format(" (%zu of %zu)", counts.all - counts.measured, counts.all);
    return text;
}

std::string closingText(const SurveyOutcome& outcome, const std::string& folder)
{
    Rows rows = {{"Verdict", verdictCell(outcome.verdict, "")}, {"Channels", countsText(outcome.counts)}};
    const std::vector<std::string> worst = worstOf(outcome);
    for (size_t i = 0; i < std::min(worst.size(), kWorst); ++i)
        rows.emplace_back(i == 0 ? "Worst" : "", worst[i]);
    if (worst.size() > kWorst)
        rows.emplace_back("", format("and %zu more", worst.size() - kWorst));
    if (const std::string missing = missingOf(outcome); !missing.empty())
        rows.emplace_back("Not measured", missing);
    rows.emplace_back("Reports", folder);
    return aligned(rows);
}

Json summaryJson(const SurveyOutcome& outcome, const std::string& site, const std::string& folder)
{
    Json points = Json::array();
    for (const PointOutcome& point : outcome.points) {
        Json one = {{"name", point.point->name}, {"verdict", verdictJson(point.verdict)}};
        one.add(countsJson(point.counts));
        points.push(one);
    }
    Json json = {{"site", site},
                 {"out", folder},
                 {"verdict", verdictJson(outcome.verdict)},
                 {"complete", outcome.counts.measured == outcome.counts.all}};
    json.add(countsJson(outcome.counts));
    json.set("points", points);
    return json;
}

} // namespace tool

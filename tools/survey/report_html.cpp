// The report as one page: everything is in it, nothing of it moves.
#include "common/markup.h"
#include "common/names.h"
#include "common/text.h"
#include "measure/frequency.h"
#include "survey/pictures.h"
#include "survey/quantities.h"
#include "survey/reports.h"
#include "survey/words.h"

#include <algorithm>
#include <map>
#include <set>

namespace tool {

namespace {

constexpr const char* kNone = "\u2013";

// "2 channels".
std::string counted(size_t number, const char* what)
{
    return format("%zu %s%s", number, what, number == 1 ? "" : "s");
}

std::string join(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : ", ") + word;
    return text;
}

void addNew(std::vector<std::string>& words, const std::string& word)
{
    if (std::ranges::find(words, word) == words.end())
        words.push_back(word);
}

// A text of several lines.
Markup lines(const std::string& text)
{
    Markup result;
    for (size_t from = 0; from <= text.size();) {
        const size_t to = std::min(text.find('\n', from), text.size());
        std::string line = text.substr(from, to - from);
        if (line.ends_with('\r'))
            line.pop_back();
        if (from > 0 && !(line.empty() && to == text.size()))
            result += Markup::raw("<br>");
        result += line;
        from = to + 1;
    }
    return result;
}

// "pass" in a frame of its kind; "not judged" in none.
Markup tag(const std::string& word)
{
    const bool verdict = word == "pass" || word == "marginal" || word == "fail";
    return verdict ? element("span", word, {{"class", "tag " + word}}) : Markup(word);
}

Markup time(int64_t timeMs)
{
    return element("time", momentText(timeMs), {{"datetime", isoTime(timeMs)}});
}

// ---- tables ----

Markup row(std::initializer_list<Markup> cells)
{
    Markup content;
    for (const Markup& cell : cells)
        content += cell;
    return block("tr", content);
}

Markup cell(const Markup& content, const char* kind = "")
{
    return element("td", content, {{"class", kind}});
}

Markup number(const std::string& text)
{
    return cell(text, "n");
}

Markup rowHead(const Markup& content)
{
    return element("th", content, {{"scope", "row"}});
}

struct Heading {
    const char* text;
    const char* kind = "";
};

// In a box of its own, which scrolls where the screen is narrower.
Markup table(const std::string& caption, std::initializer_list<Heading> headings, const Markup& rows)
{
    Markup head;
    for (const Heading& heading : headings)
        head += element("th", heading.text, {{"scope", "col"}, {"class", heading.kind}});
    return block(
        "div",
        element("table",
                element("caption", caption) + block("thead", block("tr", head)) + block("tbody", rows),
                {{"class", "values"}}),
        {{"class", "scroll"}, {"role", "region"}, {"aria-label", caption}, {"tabindex", "0"}});
}

Markup fact(const char* name, const Markup& value)
{
    return value.empty() ? Markup() : row({rowHead(name), cell(value)});
}

Markup facts(const std::string& caption, const Markup& rows)
{
    return block("table", element("caption", caption) + block("tbody", rows), {{"class", "facts"}});
}

// ---- the whole ----

Markup missing(const SurveyOutcome& outcome)
{
    if (outcome.counts.measured == outcome.counts.all)
        return element("p", format("Complete: all of %zu channels are measured.", outcome.counts.all));
    Markup text = element("p", "Incomplete: " + missingText(outcome.counts) + ".") + Markup::raw("\n");
    for (const PointOutcome& point : outcome.points)
        if (point.counts.measured < point.counts.all)
            text += block("p", point.point->name + ": " + missingText(point.counts) + ".");
    return text;
}

Markup result(const SurveyResults& results, const SurveyOutcome& outcome)
{
    const Counts& counts = outcome.counts;
    const bool final = counts.measured == counts.all || outcome.verdict == Verdict::fail;
    Markup content = block("p", std::string(verdictWord(outcome.verdict)) + (final ? "" : " so far"),
                           {{"class", "word"}}) +
                     missing(outcome) +
                     block("p", format("%zu pass, %zu marginal, %zu fail, %zu not judged.", counts.passed,
                                       counts.marginal, counts.failed, counts.unjudged()));
    if (results.strangers > 0)
        content += block("p", counted(results.strangers, "reading") +
                                  " of what the survey no longer has: left out.");
    return block("div", content, {{"class", std::string("result ") + verdictWord(outcome.verdict)}});
}

Markup circumstances(const SurveyResults& results)
{
    const Survey& survey = results.survey;
    const Times times = timesOf(results);
    return facts("Survey", fact("Site", survey.site) + fact("Measured by", survey.by) +
                               (results.readings.empty() ? fact("Begun", time(times.firstMs))
                                                         : fact("First reading", time(times.firstMs)) +
                                                               fact("Last reading", time(times.lastMs))) +
                               fact("Note", lines(survey.note)));
}

std::string calibrationText(const std::optional<int32_t>& state)
{
    constexpr int32_t kFinished = 4; // 1 to 3 are its turns
    if (!state)
        return "not told by the meter";
    return *state == 0           ? "not calibrated"
           : *state == kFinished ? "calibrated"
                                 : format("not finished, state %d", *state);
}

Markup meter(const SurveyMeter& meter)
{
    const auto told = [](const std::string& text) { return text.empty() ? "not told by the meter" : text; };
    return facts("Meter",
                 fact("Model", told(meter.model)) + fact("Serial number", told(meter.serial)) +
                     fact("Program version", told(meter.version)) +
                     fact("Calibration of the angle sensor", calibrationText(meter.angleCalibration)) +
                     fact("Calibration of the measurement", "not told by the meter"));
}

std::string anchorOf(const SurveyOutcome& outcome, const PointOutcome& point)
{
    return format("point-%td", &point - outcome.points.data() + 1);
}

Markup points(const SurveyOutcome& outcome)
{
    Markup rows;
    for (const PointOutcome& point : outcome.points) {
        const std::string link = "#" + anchorOf(outcome, point);
        const Counts& counts = point.counts;
        rows +=
            row({rowHead(element("a", point.point->name, {{"href", link}})),
                 cell(tag(verdictWord(point.verdict))),
                 number(counts.measured == counts.all ? format("%zu", counts.all)
                                                      : format("%zu of %zu", counts.measured, counts.all)),
                 number(format("%zu", counts.passed)), number(format("%zu", counts.marginal)),
                 number(format("%zu", counts.failed)),
                 element("td", element("a", Markup(), {{"href", link}}),
                         {{"class", "page n"}, {"aria-hidden", "true"}})});
    }
    return block("nav",
                 table("Channels by point",
                       {{"Point"},
                        {"Verdict"},
                        {"Channels", "n"},
                        {"Passed", "n"},
                        {"Marginal", "n"},
                        {"Failed", "n"},
                        {"Page", "page n"}},
                       rows),
                 {{"aria-label", "Points of the site"}});
}

// ---- limits ----

// What the thresholds differ by: "catv 64QAM".
std::string signalText(const MultiMeasResult& result)
{
    std::string text = nameOrCode(systemName(result.bdSys), result.bdSys);
    if (result.lock != 0 && result.MOD != 0)
        text += " " + nameOrCode(modulationName(result.MOD), result.MOD);
    return text;
}

// What is judged by the same limits: told once.
class LimitTable {
public:
    void add(const std::string& point, const std::string& list, const std::string& system,
             const char* quantity, const Bounds& bounds)
    {
        if (bounds.areNone())
            return;
        std::vector<std::string> edges;
        for (const Edge& edge : kEdges)
            edges.push_back(bounds.*edge.value ? format("%g", *(bounds.*edge.value)) : kNone);
        m_points[{list, system}].insert(point);
        const Key key{list, quantity, std::move(edges), bounds.ofPlan ? "plan" : "meter"};
        const auto found = std::ranges::find(m_rows, key, &Row::key);
        Row& row = found != m_rows.end() ? *found : m_rows.emplace_back(Row{key, {}, {}});
        addNew(row.systems, system);
        addNew(row.points, point);
    }

    Markup markup() const
    {
        Markup rows;
        for (const auto& [key, systems, points] : m_rows) {
            const auto& [list, quantity, edges, from] = key;
            std::set<std::string> everywhere;
            for (const std::string& system : systems)
                everywhere.insert(m_points.at({list, system}).begin(), m_points.at({list, system}).end());
            rows +=
                row({rowHead(list + (points.size() == everywhere.size() ? "" : " (" + join(points) + ")")),
                     cell(join(systems)), cell(quantity), number(edges[0]), number(edges[1]),
                     number(edges[2]), number(edges[3]), cell(from)});
        }
        return rows;
    }

private:
    using Key = std::tuple<std::string, std::string, std::vector<std::string>, std::string>;
    struct Row {
        Key key;
        std::vector<std::string> systems, points;
    };

    std::vector<Row> m_rows;
    std::map<std::pair<std::string, std::string>, std::set<std::string>> m_points; // that have limits there
};

Markup limits(const SurveyOutcome& outcome)
{
    LimitTable limits;
    for (const PointOutcome& point : outcome.points)
        for (const ListOutcome& list : point.lists) {
            for (const ChannelOutcome& channel : list.channels) {
                if (channel.reading == nullptr || isSilent(channel))
                    continue;
                const SurveyReading& one = *channel.reading;
                for (const Quantity& quantity : kQuantities)
                    limits.add(point.point->name, list.list->name, signalText(one.reading.result),
                               quantity.label, one.bounds.*quantity.bounds);
            }
            limits.add(point.point->name, list.list->name, "all", "Slope\u00A0(dB)", list.list->slope);
        }
    const Markup rows = limits.markup();
    if (rows.empty())
        return block("p", "No limits: nothing is judged but whether there is a signal.");
    return table("Limits by which the values are judged",
                 {{"List"},
                  {"Signal"},
                  {"Quantity"},
                  {"Fails below", "n"},
                  {"Marginal below", "n"},
                  {"Marginal above", "n"},
                  {"Fails above", "n"},
                  {"From"}},
                 rows) +
           block("p", "plan: the plan of the survey; meter: the thresholds in the meter.",
                 {{"class", "soft"}});
}

// ---- a point ----

// A value that misses its limits has a mark before it, and says so to who cannot see it.
Markup value(const std::string& text, Verdict verdict)
{
    if (verdict != Verdict::fail && verdict != Verdict::marginal)
        return number(text);
    const char* const mark = verdict == Verdict::fail ? "\u00D7" : "!";
    return cell(element("span",
                        element("span", mark, {{"aria-hidden", "true"}}) + Markup::raw("&nbsp;") + text +
                            element("span", std::string(" ") + verdictWord(verdict), {{"class", "unseen"}}),
                        {{"class", std::string("miss ") + verdictWord(verdict)}}),
                "n");
}

Markup verdictCell(const ChannelOutcome& channel)
{
    const std::string word = verdictWord(channel);
    const bool alone = channel.why.empty() || channel.why == word;
    return cell(tag(word) + (alone ? std::string() : " " + channel.why), "why");
}

Markup channelRow(const ChannelOutcome& channel)
{
    const SurveyReading& one = *channel.reading;
    const Reading& reading = one.reading;
    const MultiMeasResult& result = reading.result;
    const bool locked = result.lock != 0;
    return row({rowHead(channel.channel->name), number(inMhz(reading.condition.ulFreq)),
                value(tenths(result.LEVEL), reading.judgement.level),
                value(hasSignal(result) ? tenths(result.CNR) : kNone, reading.judgement.cnr),
                value(one.merDb ? format("%.1f", *one.merDb) : kNone, reading.judgement.mer),
                value(result.BER_TOTAL != 0 ? bitErrorRateText(result) : kNone, reading.judgement.ber),
                cell(locked ? nameOrCode(modulationName(result.MOD), result.MOD) : kNone),
                cell(locked                         ? "yes"
                     : needsLock(reading.condition) ? "no"
                                                    : kNone),
                verdictCell(channel)});
}

// "no signal: 13-15, 17".
Markup silent(const ListOutcome& list, const char* word)
{
    std::vector<std::string> names;
    for (const ChannelOutcome& channel : list.channels)
        if (isSilent(channel) && std::string_view(verdictWord(channel)) == word)
            names.push_back(channel.channel->name);
    return names.empty() ? Markup() : block("p", std::string(word) + ": " + namesText(names));
}

Markup slope(const ListOutcome& list)
{
    const Bounds& limits = list.list->slope;
    std::vector<std::string> edges;
    for (const Edge& edge : kEdges)
        if (const auto& value = limits.*edge.value)
            edges.push_back(format("%s %g dB", edge.words, *value));
    if (!list.slopeDb)
        return edges.empty() ? Markup()
                             : block("p", "Slope: not measured, which takes two channels that lock.");
    Markup text = format("Slope: %.1f dB from ", *list.slopeDb) + list.strongest + " to " + list.weakest;
    if (!edges.empty())
        text += " (" + join(edges) + "): " + tag(verdictWord(list.slope));
    return block("p", text);
}

// What was selected while the list was measured.
Markup conditions(const ListOutcome& list)
{
    std::vector<std::string> inputs;
    std::vector<std::string> supplies;
    std::optional<Times> times;
    for (const ChannelOutcome& channel : list.channels) {
        if (channel.reading == nullptr)
            continue;
        const Reading& reading = channel.reading->reading;
        if (reading.input)
            addNew(inputs, format("%u", *reading.input));
        if (reading.supply)
            addNew(supplies,
                   nameOrCode(powerSupplyName(static_cast<uint8_t>(*reading.supply)), *reading.supply));
        if (!times)
            times = Times{reading.timeMs, reading.timeMs};
        times->firstMs = std::min(times->firstMs, reading.timeMs);
        times->lastMs = std::max(times->lastMs, reading.timeMs);
    }
    if (!times)
        return {};
    Markup text;
    if (!inputs.empty())
        text += "Input " + join(inputs) + "; ";
    if (!supplies.empty())
        text += "antenna supply " + join(supplies) + "; ";
    text += time(times->firstMs);
    if (times->lastMs / 1000 != times->firstMs / 1000)
        text += " to " + time(times->lastMs);
    return block("p", text, {{"class", "lead"}});
}

Markup figure(const Markup& picture, const std::string& caption, const char* kind = "card")
{
    if (picture.empty())
        return {};
    return block("figure", block("div", picture, {{"class", kind}}) +
                               (caption.empty() ? Markup() : element("figcaption", caption)));
}

Markup captures(const ListOutcome& list)
{
    Markup result;
    for (const ChannelOutcome& channel : list.channels) {
        if (channel.reading == nullptr)
            continue;
        const std::string name = "Channel " + channel.channel->name;
        result += figure(constellationPicture(*channel.reading), name + ": constellation", "card square");
        result += figure(delayProfilePicture(*channel.reading), name + ": delay profile");
        if (!channel.reading->trouble.empty())
            result += block("p", name + ": not captured: " + channel.reading->trouble);
    }
    return result;
}

Markup list(const PointOutcome& point, const ListOutcome& list)
{
    Markup rows;
    for (const ChannelOutcome& channel : list.channels)
        if (!isSilent(channel))
            rows += channelRow(channel);
    const std::string caption = "Channels of " + list.list->name + ", " + point.point->name;
    return block("h3", list.list->name) + conditions(list) + figure(levelsPicture(point, list), "") +
           (rows.empty() ? Markup()
                         : table(caption,
                                 {{"Channel"},
                                  {"MHz", "n"},
                                  {"Level dB\u00B5V", "n"},
                                  {"C/N dB", "n"},
                                  {"MER dB", "n"},
                                  {"BER", "n"},
                                  {"Modulation"},
                                  {"Lock"},
                                  {"Verdict", "why"}},
                                 rows)) +
           slope(list) + silent(list, "no signal") + silent(list, "not measured") + captures(list);
}

Markup section(const SurveyOutcome& outcome, const PointOutcome& point)
{
    Markup content = block("h2", point.point->name + Markup::raw(" ") + tag(verdictWord(point.verdict)),
                           {{"id", anchorOf(outcome, point)}});
    if (!point.point->note.empty())
        content += block("p", lines(point.point->note), {{"class", "lead"}});
    for (const ListOutcome& one : point.lists)
        content += list(point, one);
    return block("section", content, {{"aria-labelledby", anchorOf(outcome, point)}});
}

// At the foot of every page on paper: pages that went astray tell what they are of.
std::string footer(const std::string& text)
{
    std::string content;
    for (const char c : characters(text)) {
        const auto byte = static_cast<unsigned char>(c);
        content += byte >= 0x80 || std::isalnum(byte) != 0 ? std::string(1, c) : format("\\%02X ", byte);
    }
    return "@page { @bottom-left { content: \"" + content + "\"; } }\n";
}

} // namespace

std::string reportHtml(const SurveyResults& results, const SurveyOutcome& outcome)
{
    const std::string title = "Survey of " + (results.survey.site.empty() ? "a site" : results.survey.site);
    Markup body = block("h1", title) + result(results, outcome) + circumstances(results) +
                  meter(results.survey.meter) + block("h2", "Points") + points(outcome) +
                  block("h2", "Limits") + limits(outcome) +
                  block("p",
                        Markup("In the tables \u00D7 is before a value that fails, ! before one that is "
                               "marginal. MER is the modulation error ratio, BER the bit error rate."),
                        {{"class", "soft"}});
    for (const PointOutcome& point : outcome.points)
        body += section(outcome, point);
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"color-scheme\" content=\"light dark\">\n"
           "<meta name=\"generator\" content=\"vx63\">\n" +
           (results.survey.by.empty()
                ? std::string()
                : "<meta name=\"author\" content=\"" + escaped(results.survey.by) + "\">\n") +
           block("title", title).text() + "<style>" + std::string(kReportStyle) + footer(title) +
           "</style>\n</head>\n" + block("body", block("main", body)).text() + "</html>\n";
}

} // namespace tool

// vx63 survey compare: what became worse from one survey to another.
#include "common/failure.h"
#include "common/list.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "survey/compare.h"
#include "survey/results.h"
#include "survey/subcommands.h"
#include "survey/words.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace tool {

namespace {

struct Options {
    std::string before, after;
    double by = 1;
    bool all = false;
    Form form = Form::text;
};

double decibelsIn(const std::string& option, const std::string& text)
{
    double value = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !(value >= 0 && value <= 100))
        throw WrongUsage(option, format("'%s' is no number of dB from 0 to 100", text.c_str()));
    return value;
}

size_t countOf(const SurveyComparison& comparison, Change kind)
{
    return static_cast<size_t>(std::ranges::count(comparison.differences, kind, &SurveyDifference::kind));
}

Json jsonOf(const SurveyDifference& difference)
{
    return {{"point", difference.point},
            {"list", difference.list},
            {"channel", difference.channel.empty() ? Json() : Json(difference.channel)},
            {"quantity", difference.quantity},
            {"before", difference.before},
            {"after", difference.after},
            {"change", difference.change},
            {"worse", difference.kind == Change::worse}};
}

// "measured before alone: outlet 2, uhf: 27-29", a line a list.
std::string linesOf(const SurveyComparison& comparison, Change kind, const std::string& what)
{
    std::string text;
    const std::vector<SurveyDifference>& all = comparison.differences;
    for (size_t i = 0; i < all.size();) {
        std::vector<std::string> names;
        const size_t first = i;
        for (; i < all.size() && all[i].point == all[first].point && all[i].list == all[first].list; ++i)
            if (all[i].kind == kind)
                names.push_back(all[i].channel);
        if (!names.empty())
            text +=
                paragraph(what + ": " + all[first].point + ", " + all[first].list + ": " + namesText(names));
    }
    return text;
}

std::string textOf(const SurveyComparison& comparison, bool all)
{
    Table rows = {{"Point", "List", "Channel", "What", "Before", "After"}};
    for (const SurveyDifference& one : comparison.differences)
        if (one.kind == Change::worse || (all && one.kind == Change::better))
            rows.push_back({one.point,
                            one.list,
                            one.channel.empty() ? "-" : one.channel,
                            one.name,
                            one.beforeText,
                            {one.afterText, one.kind == Change::worse ? Tint::bad : Tint::good}});
    const size_t worse = countOf(comparison, Change::worse);
    return (rows.size() > 1 ? table(rows) + "\n" : std::string()) +
           linesOf(comparison, Change::gone, "no longer measured") +
           linesOf(comparison, Change::added, "new") +
           paragraph((worse == 0 ? std::string("nothing became worse")
                                 : format("%zu value%s became worse", worse, worse == 1 ? "" : "s")) +
                     format(", %zu better; %zu channels compared", countOf(comparison, Change::better),
                            comparison.compared));
}

int compare(const Options& options)
{
    const SurveyResults before = readResults(options.before);
    const SurveyResults after = readResults(options.after);
    if (before.survey.site != after.survey.site)
        complain("the surveys are of different sites, '" + before.survey.site + "' and '" +
                 after.survey.site + "': compared all the same");
    const SurveyComparison comparison = compareSurveys(outcomeOf(before), outcomeOf(after), options.by);
    if (options.form == Form::text) {
        print(textOf(comparison, options.all));
    } else {
        List objects(options.form);
        for (const SurveyDifference& difference : comparison.differences)
            if (options.all || difference.kind != Change::better)
                objects.add(jsonOf(difference));
        objects.end();
    }
    return countOf(comparison, Change::worse) > 0 ? kExitDiffer : kExitSuccess;
}

} // namespace

void addSurveyCompare(CommandLine& survey)
{
    survey.addCommand(
        "compare", "Tell what became worse from one survey to another",
        "vx63 survey compare 2026-06 2026-11 --by 2", compare, [](CommandLine& line, Options& options) {
            line.text("BEFORE", options.before, "DIR", "Folder of the earlier survey, or its results.jsonl")
                .required();
            line.text("AFTER", options.after, "DIR", "That of the later one").required();
            line.value("--by", "DB", "dB by which a value becomes another [1.0]",
                       [&options](const std::string& text) { options.by = decibelsIn("--by", text); });
            line.flag("--all", options.all, "Tell what became better, too");
            line.csv(options.form);
        });
}

} // namespace tool

// Reads any text as the plan of a survey: a mistake is told with its place; what is accepted has channels
// that the meter takes, and its first line of results can be read back as it is.
#include "told.h"

#include "measure/limits.h"
#include "survey/plan.h"
#include "survey/results.h"

using held::require;
using namespace tool;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const held::File file(text);
    SurveyPlan plan;
    try {
        plan = readPlan(file.path());
    } catch (const Failure& failure) {
        held::judgeFailure(failure);
        require(failure.code() == kExitNoInput, "another code", failure.what());
        require(failure.why().starts_with(file.path() + ":"), "a mistake without its place", failure.what());
        return 0;
    }
    const Survey& survey = plan.survey;
    require(!survey.site.empty() && !survey.points.empty(), "a plan without a site or points", text);
    require(plan.orders.size() == survey.points.size(), "orders of other points", text);
    require(plan.lockTimeoutMs >= 0 && plan.lockTimeoutMs <= 3600000, "the time-out", text);
    for (size_t i = 0; i < survey.points.size(); ++i) {
        const SurveyPoint& point = survey.points[i];
        require(!point.name.empty() && !point.lists.empty(), "a point without a name or lists", text);
        require(plan.orders[i].size() == point.lists.size(), "orders of other lists", text);
        for (const SurveyList& list : point.lists) {
            require(!list.name.empty() && !list.channels.empty(), "a list without a name or channels", text);
            for (const SurveyChannel& channel : list.channels) {
                require(!channel.name.empty() && !channel.ways.empty(), "a channel without a name or ways",
                        text);
                for (const MeasCondition& way : channel.ways)
                    require(!refusalOf(way), "a channel that the meter refuses", text);
            }
        }
    }
    const std::string line = surveyLine(survey);
    require(held::isPrintable(line.substr(0, line.size() - 1)), "the line of the survey is not printable",
            line);
    require(surveyLine(readResults(held::File(line).path()).survey) == line,
            "the survey comes back otherwise", line);
    return 0;
}

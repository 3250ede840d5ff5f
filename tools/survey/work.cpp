#include "survey/work.h"

#include "common/failure.h"
#include "survey/results.h"

#include <algorithm>
#include <utility>

namespace tool {

namespace {

std::string trimmed(const std::string& text)
{
    const size_t from = text.find_first_not_of(' ');
    return from == std::string::npos ? "" : text.substr(from, text.find_last_not_of(' ') - from + 1);
}

// Which of the points are named: "outlet 2,outlet 5". A name can have a comma itself.
std::vector<bool> chosenPoints(const std::vector<SurveyPoint>& points, const std::string& names)
{
    std::vector<bool> chosen(points.size(), names.empty());
    for (size_t from = 0; from < names.size();) {
        size_t to = names.size();
        const auto isNamed = [&](const SurveyPoint& point) {
            return trimmed(point.name) == trimmed(names.substr(from, to - from));
        };
        auto found = std::ranges::find_if(points, isNamed);
        while (found == points.end() && to > from) {
            to = names.rfind(',', to - 1);
            if (to == std::string::npos || to < from)
                break;
            found = std::ranges::find_if(points, isNamed);
        }
        if (found == points.end()) {
            std::string known;
            for (const SurveyPoint& point : points)
                known += (known.empty() ? "" : ", ") + point.name;
            throw Failure(kExitUsage,
                          "cannot measure at '" + trimmed(names.substr(from, names.find(',', from) - from)) +
                              "'",
                          "the plan has no point of that name", "it has " + known);
        }
        chosen[static_cast<size_t>(found - points.begin())] = true;
        from = to + 1;
    }
    return chosen;
}

} // namespace

std::vector<Work> workOf(const SurveyPlan& plan, const std::string& names,
                         const std::vector<SurveyReading>& readings, bool again)
{
    const std::vector<bool> chosen = chosenPoints(plan.survey.points, names);
    std::vector<Work> work;
    for (size_t p = 0; p < chosen.size(); ++p) {
        if (!chosen[p])
            continue;
        const SurveyPoint& point = plan.survey.points[p];
        Work one{&point, p + 1, 0, {}};
        for (size_t l = 0; l < point.lists.size(); ++l)
            for (const SurveyChannel& channel : point.lists[l].channels) {
                const auto isOfIt = [&](const SurveyReading& reading) {
                    return isReadingOf(reading, point, point.lists[l], channel);
                };
                ++one.all;
                if (again || std::ranges::none_of(readings, isOfIt))
                    one.left.push_back({&point, &point.lists[l], &channel, &plan.orders[p][l]});
            }
        work.push_back(std::move(one));
    }
    return work;
}

} // namespace tool

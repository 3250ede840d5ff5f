// What of a survey is left to be measured.
#pragma once

#include "survey/channel.h"
#include "survey/plan.h"
#include "survey/survey.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tool {

// At a point, in the order of the plan.
struct Work {
    const SurveyPoint* point;
    size_t number; // of the point, from 1
    size_t all;    // channels of the point
    std::vector<SurveyTask> left;
};

// At the points that are named, or at all of them: "outlet 2,outlet 5". Points into the plan. Throws Failure.
//   readings  what there is; it is left out unless `again`
std::vector<Work> workOf(const SurveyPlan& plan, const std::string& names,
                         const std::vector<SurveyReading>& readings, bool again);

} // namespace tool

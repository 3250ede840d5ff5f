// The plan of a survey, a TOML file: what is measured where, and by what it is judged. docs/survey.md tells
// every key.
#pragma once

#include "survey/quantities.h"
#include "survey/survey.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tool {

// Of a list, what its results do not tell.
struct ListOrders {
    PlanLimits limits;
    bool constellation = false; // is kept of each channel that locks
    bool delayProfile = false;
};

struct SurveyPlan {
    Survey survey;                               // without time and meter
    std::vector<std::vector<ListOrders>> orders; // of each list of each point
    int64_t lockTimeoutMs = 0;
};

// Throws Failure that names the place: "FILE:LINE: KEY: why".
SurveyPlan readPlan(const std::string& path);

} // namespace tool

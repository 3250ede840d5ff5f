// A channel at a point, measured.
#pragma once

#include "common/output.h"
#include "measure/judgement.h"
#include "survey/plan.h"
#include "survey/survey.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tool {

// All that is known of one channel that is to be measured.
struct SurveyTask {
    const SurveyPoint* point;
    const SurveyList* list;
    const SurveyChannel* channel;
    const ListOrders* orders;
};

// At the input that is selected. Nothing after an interruption. Throws Failure.
std::optional<SurveyReading> measureChannel(const SurveyTask& task, const std::vector<Threshold>& thresholds,
                                            int64_t lockTimeoutMs, Progress& progress);

} // namespace tool

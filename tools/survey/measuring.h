// A survey at the meter.
#pragma once

#include "measure/judgement.h"
#include "survey/plan.h"
#include "survey/results_file.h"
#include "survey/survey.h"
#include "survey/work.h"

#include <vector>

namespace tool {

// What it does not tell is left out.
SurveyMeter readMeter();

// Measures what is left, channel by channel, each into the file when it is done; until somebody who is asked
// ends it, or an interruption. Throws Failure and BrokenPipe.
//   asks   before each point
//   shows  the channels on standard output
void measureAll(const SurveyPlan& plan, const std::vector<Work>& work,
                const std::vector<Threshold>& thresholds, ResultsFile& file, bool asks, bool shows);

} // namespace tool

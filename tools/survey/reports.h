// What is made of the results of a survey, for people and for programs.
#pragma once

#include "survey/survey.h"

#include <string>

namespace tool {

// Into the folder. Throws Failure.
void writeReports(const SurveyResults& results, const std::string& dir);

} // namespace tool

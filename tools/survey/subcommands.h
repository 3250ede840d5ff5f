// The commands of `vx63 survey` below it, each in a file of its own; see commands.h.
#pragma once

#include "commands.h"

namespace tool {

void addSurveyReport(CommandLine& survey);
void addSurveyCompare(CommandLine& survey);

} // namespace tool

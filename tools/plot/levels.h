// The levels of a list of channels, as a picture and on a terminal.
#pragma once

#include "measure/judgement.h"
#include "plot/text.h"

#include <string>
#include <vector>

namespace tool {

struct LevelBar {
    std::string name;
    double level; // dBuV
    bool signal;
    Verdict verdict;
};

// Throws Failure.
void plotLevels(const std::string& path, const std::string& title, const std::string& subtitle,
                const std::vector<LevelBar>& bars);

std::string levelsText(const std::vector<LevelBar>& bars, const TextStyle& style);

} // namespace tool

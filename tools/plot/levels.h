// The levels of a list of channels, as a picture and on a terminal.
#pragma once

#include "plot/picture.h"
#include "plot/text.h"

#include <string>
#include <vector>

namespace tool {

// In the order of the legend.
enum class LevelKind { pass, marginal, fail, signal, unrecognised, none };

struct LevelBar {
    std::string name;
    double level; // dBuV
    LevelKind kind;
    double mhz;
    double widthMhz; // 0: not known
};

struct LevelChart {
    bool byFrequency; // else by name, in their order
    std::vector<LevelBar> bars;
    double mostWidth = 1800; // of the plot area; long lists take as much
};

// The legend of the caption comes from the chart. Throw Failure.
std::string drawLevels(CanvasMaker maker, Caption caption, const LevelChart& chart);
void plotLevels(const std::string& path, Caption caption, const LevelChart& chart);

std::string levelsText(const LevelChart& chart, const TextStyle& style);

} // namespace tool

// Where the labels of an axis stand.
#pragma once

#include <string>

namespace tool {

// The smallest of 1, 2, 5, 10, 20, ... and 0.5, 0.2, 0.1, ... that is no less.
double roundStep(double least);

// A multiple of the step, with as many decimals as the step has.
std::string stepText(double value, double step);

} // namespace tool

// Digits so large that they are read from afar: 5 lines high.
#pragma once

#include "live/grid.h"

#include <string_view>

namespace tool {

inline constexpr size_t kDigitRows = 5;

size_t largeWidth(std::string_view number); // columns it takes

// Of digits, points and "-".
void largeText(Grid& grid, size_t column, size_t row, std::string_view number, Look look);

} // namespace tool

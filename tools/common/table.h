// A table for people.
#pragma once

#include <string>
#include <vector>

namespace tool {

// One line a row, every column as wide as its widest cell; safe on a terminal.
std::string table(const std::vector<std::vector<std::string>>& rows);

} // namespace tool

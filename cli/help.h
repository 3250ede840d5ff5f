// What --help prints.
#pragma once

#include "cli/declaration.h"

#include <string>
#include <vector>

namespace cli {

// The help of the command that the words name. Lines are as long as the output is wide, but
// at most 80 and at least 40 columns.
std::string helpOf(const CLI::App& program, const Extras& extras, const std::vector<std::string>& words);

} // namespace cli

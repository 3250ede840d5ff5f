// Asking before something is lost.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace tool {

// Adds --yes.
void addYesOption(CLI::App& app, bool& yes);

// Returns when `yes`, or when somebody on a terminal agrees; no answer means no. Throws Failure otherwise.
//   question  "Delete the set TOKYO?"
void confirm(bool yes, const std::string& question);

} // namespace tool

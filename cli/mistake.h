// What is wrong with a command line that CLI11 has refused, in words for a person. CLI11 tells what is
// missing before what is unknown, and words that are left over backwards.
#pragma once

#include "cli/declaration.h"

#include <optional>
#include <string>
#include <vector>

namespace cli {

struct Mistake {
    std::string line; // the command that was called so: "vx63 measure single"
    std::string why;
    std::string hint;       // what to try
    bool inCommand = false; // there is no such command, or none that help could be about
};

// The first word that cannot stand where it stands, or what is missing behind the last; nothing where each
// word by itself is right. All commands are declared.
std::optional<Mistake> mistakeIn(const CLI::App& program, const Extras& extras,
                                 const std::vector<std::string>& words);

// That a value or something else is refused: what to try is a word of the option or argument that is near,
// else help. The program has read the words.
Mistake refusal(const CLI::App& program, const Extras& extras, const std::vector<std::string>& words,
                const std::string& why, const std::string& option = "");

} // namespace cli

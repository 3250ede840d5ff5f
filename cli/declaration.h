// What a program tells of its own command line: to the shells, which complete it, and to script/manual-pages.
// Both programs answer in the same way, when one of these stands first on their command line; no help shows
// them.
//
//   --complete WORD...  what can stand in place of the last word, a line each: text, tab, description
//   --declaration       commands, options and arguments as JSON
//
// In place of a text, ":files" and ":folders" stand for the names of files and of folders, ":command N" for
// whatever completes a command of its own, which begins at word N (the program is word 0).
//
// Words that complete a value come from its type, as the help shows it: "on|off" and "0..4" are words, FILE
// and DIR names of files and folders. Where that does not tell them, Extras do.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace cli {

// What stands before the word that is completed, from its command on.
struct Given {
    std::vector<std::string> options; // their names
    std::vector<std::string> arguments;
};

using Words = std::function<std::vector<std::string>(const Given&)>;

// What CLI11 does not know of a command line.
struct Extras {
    std::map<const CLI::Option*, Words> words;
    std::map<const CLI::App*, std::string> rest; // of commands that run another one: "-- COMMAND..."
};

// The words of the command line: "help scan" as "scan --help".
std::vector<std::string> wordsIn(int argc, char** argv);

// Whether the command line asks for what takes all commands: help or an answer. For anything else those are
// enough that are named on it: declaring all of them takes longer than most of them run.
bool needsAll(const std::vector<std::string>& arguments);

// The answer, if it was asked for.
std::optional<std::string> answer(const CLI::App& program, const Extras& extras,
                                  const std::vector<std::string>& arguments);

} // namespace cli

// What CLI11 knows of a command line, in the words of the help, and where on it a word stands.
#pragma once

#include "cli/declaration.h"

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace cli {

bool takesValue(const CLI::Option& option);
bool isRepeatable(const CLI::Option& option);
std::vector<const CLI::Option*> optionsOf(const CLI::App& command); // that the help shows
std::vector<const CLI::Option*> argumentsOf(const CLI::App& command);
std::vector<const CLI::App*> commandsOf(const CLI::App& command);
const CLI::App* commandNamed(const CLI::App& command, const std::string& name);
std::string nameOf(const CLI::Option& option);     // "--json", "FILE"
std::string typeOf(const CLI::Option& option);     // "KHZ", "on|off"
std::string optionNameIn(const std::string& word); // "--freq" of "--freq=5", "-V"
std::vector<std::string> wordsOf(const CLI::Option& option, const Extras& extras, const Given& given);

// Where the next word of a command line stands.
struct Place {
    explicit Place(const CLI::App& program, const std::vector<std::string>& words = {});
    bool isOption(const std::string& word) const; // takes the word for one, declared or not
    void advance(const std::string& word);

    const CLI::App* command;
    std::string line;                      // "vx63 measure single"
    const CLI::Option* awaiting = nullptr; // the option whose value comes next
    Given given;
    bool argumentsOnly = false; // behind "--"
};

} // namespace cli

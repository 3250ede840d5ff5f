#include "cli/place.h"

#include <algorithm>
#include <cctype>

namespace cli {

namespace {

// "off|0..4" as off, 0, 1, 2, 3, 4; nothing of "KHZ".
std::vector<std::string> wordsOfType(const std::string& type)
{
    std::vector<std::string> words;
    for (const std::string& part : CLI::detail::split(type, '|')) {
        const size_t dots = part.find("..");
        if (dots == std::string::npos) {
            words.push_back(part);
            continue;
        }
        for (int word = std::stoi(part); word <= std::stoi(part.substr(dots + 2)); ++word)
            words.push_back(std::to_string(word));
    }
    return words.size() > 1 ? words : std::vector<std::string>{};
}

} // namespace

bool takesValue(const CLI::Option& option)
{
    return option.get_items_expected_max() > 0;
}

bool isRepeatable(const CLI::Option& option)
{
    return option.get_items_expected_max() > 1;
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& command)
{
    return command.get_options(
        [](const CLI::Option* option) { return option->nonpositional() && !option->get_group().empty(); });
}

std::vector<const CLI::Option*> argumentsOf(const CLI::App& command)
{
    return command.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::vector<const CLI::App*> commandsOf(const CLI::App& command)
{
    return command.get_subcommands([](const CLI::App*) { return true; });
}

const CLI::App* commandNamed(const CLI::App& command, const std::string& name)
{
    const auto commands = commandsOf(command);
    const auto named = std::ranges::find(commands, name, [](const CLI::App* app) { return app->get_name(); });
    return named == commands.end() ? nullptr : *named;
}

std::string nameOf(const CLI::Option& option)
{
    return option.get_lnames().empty() ? option.get_name() : "--" + option.get_lnames().front();
}

std::string typeOf(const CLI::Option& option)
{
    const std::string type = option.get_type_name();
    return type.empty() && option.get_positional() ? nameOf(option) : type;
}

std::string optionNameIn(const std::string& word)
{
    return word.starts_with("--") ? word.substr(0, word.find('=')) : word.substr(0, 2);
}

std::vector<std::string> wordsOf(const CLI::Option& option, const Extras& extras, const Given& given)
{
    const auto words = extras.words.find(&option);
    return words != extras.words.end() ? words->second(given) : wordsOfType(typeOf(option));
}

Place::Place(const CLI::App& program, const std::vector<std::string>& words)
    : command(&program), line(program.get_name())
{
    for (const std::string& word : words)
        advance(word);
}

bool Place::isOption(const std::string& word) const
{
    // CLI11 takes -1 for an argument.
    return !argumentsOnly && word.size() > 1 && word[0] == '-' &&
           std::isdigit(static_cast<unsigned char>(word[1])) == 0;
}

void Place::advance(const std::string& word)
{
    if (awaiting != nullptr) {
        if (word != "=") // bash takes "--option=value" for three words
            awaiting = nullptr;
    } else if (word == "--" && !argumentsOnly) {
        argumentsOnly = true;
    } else if (isOption(word)) {
        given.options.push_back(optionNameIn(word));
        const CLI::Option* option = command->get_option_no_throw(given.options.back());
        const bool bare = word == given.options.back() || word == given.options.back() + "=";
        if (option != nullptr && takesValue(*option) && bare)
            awaiting = option;
    } else if (const CLI::App* next = commandNamed(*command, word); next != nullptr) {
        command = next;
        line += " " + word;
        given = {};
    } else {
        given.arguments.push_back(word);
    }
}

} // namespace cli

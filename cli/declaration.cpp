#include "cli/declaration.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

bool takesValue(const CLI::Option& option)
{
    return option.get_items_expected_max() > 0;
}

// Those that the help shows.
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

// "--json", "FILE"
std::string nameOf(const CLI::Option& option)
{
    return option.get_lnames().empty() ? option.get_name() : "--" + option.get_lnames().front();
}

// "KHZ", "on|off". CLI11 calls one of some words "WHAT:{on,off}".
std::string typeOf(const CLI::Option& option)
{
    std::string type = option.get_type_name();
    if (const size_t brace = type.find(":{"); brace != std::string::npos) {
        type = type.substr(brace + 2, type.size() - brace - 3);
        std::replace(type.begin(), type.end(), ',', '|');
    }
    return type.empty() && option.get_positional() ? nameOf(option) : type;
}

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

std::string linesOf(const std::vector<std::string>& words, const std::string& prefix)
{
    std::string lines;
    for (const std::string& word : words)
        lines += prefix + word + "\t\n";
    return lines;
}

std::string valuesOf(const CLI::Option& option, const Extras& extras, const Given& given,
                     const std::string& prefix = "")
{
    if (const auto words = extras.words.find(&option); words != extras.words.end())
        return linesOf(words->second(given), prefix);
    const std::string type = typeOf(option);
    if (type == "FILE")
        return ":files\n";
    if (type == "DIR")
        return ":folders\n";
    return linesOf(wordsOfType(type), prefix);
}

const CLI::App* commandNamed(const CLI::App& command, const std::string& name)
{
    const auto commands = commandsOf(command);
    const auto named = std::ranges::find(commands, name, [](const CLI::App* app) { return app->get_name(); });
    return named == commands.end() ? nullptr : *named;
}

std::string completions(const CLI::App& program, const Extras& extras, std::vector<std::string> words)
{
    std::string current;
    if (!words.empty()) {
        current = words.back();
        words.pop_back();
    }
    const CLI::App* command = &program;
    const CLI::Option* awaiting = nullptr; // the option whose value comes next
    Given given;
    bool argumentsOnly = false;
    for (size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (awaiting != nullptr) {
            if (word != "=") // bash takes "--option=value" for three words
                awaiting = nullptr;
        } else if (word == "--" && !argumentsOnly) {
            if (extras.rest.contains(command))
                return ":command " + std::to_string(i + 2) + "\n";
            argumentsOnly = true;
        } else if (word.starts_with("-") && !argumentsOnly) {
            const size_t equals = word.find('=');
            given.options.push_back(word.substr(0, equals));
            const CLI::Option* option = command->get_option_no_throw(given.options.back());
            if (option != nullptr && takesValue(*option) && equals == std::string::npos)
                awaiting = option;
        } else if (const CLI::App* next = commandNamed(*command, word); next != nullptr) {
            command = next;
            given = {};
        } else {
            given.arguments.push_back(word);
        }
    }

    if (awaiting != nullptr)
        return valuesOf(*awaiting, extras, given);
    if (const size_t equals = current.find('='); current.starts_with("-") && equals != std::string::npos) {
        const CLI::Option* option = command->get_option_no_throw(current.substr(0, equals));
        return option == nullptr ? "" : valuesOf(*option, extras, given, current.substr(0, equals + 1));
    }
    std::string lines;
    if (!current.starts_with("-")) {
        for (const CLI::App* next : commandsOf(*command))
            lines += next->get_name() + "\t" + next->get_description() + "\n";
        const auto arguments = argumentsOf(*command);
        if (given.arguments.size() < arguments.size())
            lines += valuesOf(*arguments[given.arguments.size()], extras, given);
    }
    if (!argumentsOnly)
        for (const CLI::Option* option : optionsOf(*command))
            lines += nameOf(*option) + "\t" + option->get_description() + "\n";
    return lines;
}

std::vector<std::string> namesIn(const std::set<CLI::Option*>& options)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : options)
        names.push_back(nameOf(*option));
    std::sort(names.begin(), names.end()); // not by where they lie in memory
    return names;
}

Json declarationOf(const CLI::Option& option)
{
    return {
        {"name", nameOf(option)},
        {"type", takesValue(option) ? Json(typeOf(option)) : Json()},
        {"description", option.get_description()},
        {"required", option.get_required()},
        {"repeatable", option.get_items_expected_max() > 1},
        {"needs", namesIn(option.get_needs())},
        {"excludes", namesIn(option.get_excludes())},
    };
}

Json declarationOf(const CLI::App& command, const Extras& extras)
{
    Json options = Json::array(), arguments = Json::array(), commands = Json::array();
    for (const CLI::Option* option : optionsOf(command))
        options.push_back(declarationOf(*option));
    for (const CLI::Option* argument : argumentsOf(command))
        arguments.push_back(declarationOf(*argument));
    for (const CLI::App* below : commandsOf(command))
        commands.push_back(declarationOf(*below, extras));
    const auto rest = extras.rest.find(&command);
    return {
        {"name", command.get_name()},
        {"description", command.get_description()},
        {"footer", command.get_footer()},
        {"rest", rest == extras.rest.end() ? "" : rest->second},
        {"options", options},
        {"arguments", arguments},
        {"commands", commands},
    };
}

} // namespace

bool needsAll(const std::vector<std::string>& arguments)
{
    // CLI11 takes "-hx" and "--help=1" for help, too.
    return std::ranges::any_of(arguments, [](const std::string& argument) {
        return argument.starts_with("-h") || argument.starts_with("--help") || argument == "--complete" ||
               argument == "--declaration";
    });
}

std::optional<std::string> answer(const CLI::App& program, const Extras& extras,
                                  const std::vector<std::string>& arguments)
{
    if (!arguments.empty() && arguments.front() == "--complete")
        return completions(program, extras, {arguments.begin() + 1, arguments.end()});
    if (arguments == std::vector<std::string>{"--declaration"})
        return declarationOf(program, extras).dump(2) + "\n";
    return std::nullopt;
}

} // namespace cli

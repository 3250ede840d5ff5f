#include "cli/declaration.h"

#include "cli/place.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

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
    const std::string type = extras.words.contains(&option) ? "" : typeOf(option);
    if (type == "FILE")
        return ":files\n";
    if (type == "DIR")
        return ":folders\n";
    return linesOf(wordsOf(option, extras, given), prefix);
}

std::string completions(const CLI::App& program, const Extras& extras, std::vector<std::string> words)
{
    std::string current;
    if (!words.empty()) {
        current = words.back();
        words.pop_back();
    }
    const bool help = !words.empty() && words.front() == "help";
    if (help)
        words.erase(words.begin());
    Place place(program);
    for (size_t i = 0; i < words.size(); ++i) {
        if (words[i] == "--" && place.awaiting == nullptr && extras.rest.contains(place.command))
            return ":command " + std::to_string(i + 2) + "\n";
        place.advance(words[i]);
    }

    const CLI::App& command = *place.command;
    if (place.awaiting != nullptr)
        return valuesOf(*place.awaiting, extras, place.given);
    if (const size_t equals = current.find('='); current.starts_with("-") && equals != std::string::npos) {
        const CLI::Option* option = command.get_option_no_throw(current.substr(0, equals));
        return option == nullptr ? "" : valuesOf(*option, extras, place.given, current.substr(0, equals + 1));
    }
    std::string lines;
    if (!current.starts_with("-")) {
        for (const CLI::App* next : commandsOf(command))
            lines += next->get_name() + "\t" + next->get_description() + "\n";
        if (place.command == &program && !help)
            lines += "help\tTell of a command\n";
        const auto arguments = argumentsOf(command);
        if (const size_t next = place.given.arguments.size(); next < arguments.size())
            lines += valuesOf(*arguments[next], extras, place.given);
    }
    if (!place.argumentsOnly)
        for (const CLI::Option* option : optionsOf(command))
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
        {"short", option.get_snames().empty() ? "" : "-" + option.get_snames().front()},
        {"type", takesValue(option) ? Json(typeOf(option)) : Json()},
        {"description", option.get_description()},
        {"required", option.get_required()},
        {"repeatable", isRepeatable(option)},
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

std::vector<std::string> wordsIn(int argc, char** argv)
{
    std::vector<std::string> words(argv + 1, argv + argc);
    const auto begin = std::ranges::find_if(words, [](const std::string& word) { return word != "help"; });
    if (begin != words.begin()) {
        words.erase(words.begin(), begin);
        words.insert(std::ranges::find(words, "--"), "--help");
    }
    return words;
}

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

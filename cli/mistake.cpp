#include "cli/mistake.h"

#include "cli/place.h"
#include "cli/suggestion.h"

#include <algorithm>

namespace cli {

namespace {

std::string quoted(const std::string& word)
{
    return "'" + word + "'";
}

std::vector<std::string> optionNames(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : optionsOf(command))
        names.push_back(nameOf(*option));
    return names;
}

std::vector<std::string> commandNames(const CLI::App& command, bool first)
{
    std::vector<std::string> names;
    for (const CLI::App* below : commandsOf(command))
        names.push_back(below->get_name());
    if (first)
        names.emplace_back("help");
    return names;
}

// As a shell takes it for one word.
std::string forShell(const std::string& word)
{
    const bool plain = !word.empty() && std::ranges::all_of(word, [](unsigned char c) {
        return std::isalnum(c) != 0 ||
               std::string_view("_-./=:,@%+").find(static_cast<char>(c)) != std::string_view::npos;
    });
    return plain ? word : "'" + CLI::detail::find_and_replace(word, "'", "'\\''") + "'";
}

Mistake mistakeAt(const Place& place, std::string why, std::string hint = "")
{
    return {place.line, std::move(why), hint.empty() ? "see '" + place.line + " --help'" : std::move(hint)};
}

std::string lacksValue(const CLI::Option& option)
{
    return nameOf(option) + " lacks its value " + typeOf(option);
}

std::optional<Mistake> wrongOption(const Place& place, const std::string& word)
{
    const std::string name = optionNameIn(word);
    const CLI::Option* option = place.command->get_option_no_throw(name);
    if (option == nullptr) {
        const std::string wrong = word.substr(0, word.find('='));
        return mistakeAt(place, quoted(wrong) + " is no option",
                         didYouMean(wrong, optionNames(*place.command)));
    }
    if (!takesValue(*option))
        return word == name || !word.starts_with("--")
                   ? std::nullopt
                   : std::optional(mistakeAt(place, name + " takes no value"));
    if (!isRepeatable(*option) && std::ranges::count(place.given.options, name) > 0)
        return mistakeAt(place, name + " is given twice");
    return std::nullopt;
}

} // namespace

std::optional<Mistake> mistakeIn(const CLI::App& program, const Extras& extras,
                                 const std::vector<std::string>& words)
{
    Place place(program);
    std::vector<std::string> left;
    for (size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (place.awaiting != nullptr) {
            if (word == "--" ||
                (place.isOption(word) && place.command->get_option_no_throw(optionNameIn(word)) != nullptr))
                return mistakeAt(place, lacksValue(*place.awaiting));
        } else if (word == "--" && !place.argumentsOnly) {
            if (extras.rest.contains(place.command))
                break;
            if (!commandsOf(*place.command).empty())
                return mistakeAt(place, "no command is given before '--'");
        } else if (place.isOption(word)) {
            if (auto mistake = wrongOption(place, word))
                return mistake;
        } else if (const auto names = commandNames(*place.command, i == 0);
                   !commandsOf(*place.command).empty() && argumentsOf(*place.command).empty()) {
            if (commandNamed(*place.command, word) == nullptr) {
                Mistake mistake = mistakeAt(place, quoted(word) + " is no command", didYouMean(word, names));
                mistake.inCommand = true;
                return mistake;
            }
        } else if (extras.rest.contains(place.command)) {
            std::string line = program.get_name();
            for (size_t k = 0; k < words.size(); ++k)
                line += (k == i ? " -- " : " ") + forShell(words[k]);
            Mistake mistake = mistakeAt(place, "'--' is missing before the command", line);
            mistake.inCommand = true;
            return mistake;
        } else if (place.given.arguments.size() >= argumentsOf(*place.command).size()) {
            left.push_back(word);
        }
        place.advance(word);
    }
    if (place.awaiting != nullptr)
        return mistakeAt(place, lacksValue(*place.awaiting));
    if (!left.empty()) {
        std::string list;
        for (const std::string& word : left)
            list += (list.empty() ? "" : ", ") + quoted(word);
        return mistakeAt(place, "unexpected argument" + std::string(left.size() > 1 ? "s " : " ") + list,
                         didYouMean(left.front(), optionNames(*place.command)));
    }
    if (place.command->get_require_subcommand_min() > 0)
        return mistakeAt(place, "no command is given");
    return std::nullopt;
}

Mistake refusal(const CLI::App& program, const Extras& extras, const std::vector<std::string>& words,
                const std::string& why, const std::string& option)
{
    const Place place(program, words);
    const CLI::Option* wrong = place.command->get_option_no_throw(option);
    if (wrong == nullptr || wrong->results().empty())
        return mistakeAt(place, why);
    return mistakeAt(place, why, didYouMean(wrong->results().back(), wordsOf(*wrong, extras, place.given)));
}

} // namespace cli

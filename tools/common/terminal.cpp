#include "common/terminal.h"

#include "common/failure.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>
#include <locale.h>
#include <unistd.h>

namespace tool {

namespace {

enum class Colours { automatic, always, never };
Colours s_colours = Colours::automatic;

bool isContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

bool isSet(const char* variable)
{
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

Colours coloursIn(const std::string& text)
{
    if (text == "auto")
        return Colours::automatic;
    if (text == "always" || text == "never")
        return text == "always" ? Colours::always : Colours::never;
    throw WrongUsage("--color", "'" + text + "' is none of auto, always, never");
}

} // namespace

bool isUnicode()
{
    // The locale of this question alone: that of the program stays "C", and numbers keep their point.
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (locale == nullptr)
        return false;
    const bool utf8 = std::strcmp(nl_langinfo_l(CODESET, locale), "UTF-8") == 0;
    freelocale(locale);
    return utf8;
}

size_t widthOf(std::string_view text)
{
    return static_cast<size_t>(std::ranges::count_if(text, [](char c) { return !isContinuation(c); }));
}

std::string_view cut(std::string_view text, size_t columns)
{
    size_t end = 0;
    for (size_t width = 0; end < text.size(); ++end)
        if (!isContinuation(text[end]) && ++width > columns)
            break;
    return text.substr(0, end);
}

std::vector<std::string> wrapped(std::string_view text, size_t columns)
{
    std::vector<std::string> lines;
    columns = std::max<size_t>(columns, 1);
    while (widthOf(text) > columns) {
        const std::string_view most = cut(text, columns);
        // A blank right behind what fits is as good.
        const size_t blank = text.substr(0, most.size() + 1).find_last_of(' ');
        const bool whole = blank != std::string_view::npos && blank > 0;
        const std::string_view line = whole ? text.substr(0, blank) : most;
        lines.emplace_back(line.substr(0, line.find_last_not_of(' ') + 1));
        text.remove_prefix(line.size());
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    }
    lines.emplace_back(text);
    return lines;
}

void takeColourOption(std::vector<std::string>& words)
{
    constexpr std::string_view kOption = "--color";
    const auto end = std::ranges::find(words, "--");
    const auto isOption = [&](const std::string& word) {
        return word == kOption || (word.starts_with(kOption) && word[kOption.size()] == '=');
    };
    const auto option = std::find_if(words.begin(), end, isOption);
    if (option == end)
        return;
    const bool apart = *option == kOption;
    if (apart && option + 1 == end)
        throw WrongUsage("--color", "auto, always or never is missing");
    s_colours = coloursIn(apart ? option[1] : option->substr(kOption.size() + 1));
    words.erase(option, option + (apart ? 2 : 1));
    takeColourOption(words); // the last one counts
}

bool showsColours(int fd)
{
    if (s_colours != Colours::automatic)
        return s_colours == Colours::always;
    const char* const terminal = std::getenv("TERM");
    return isatty(fd) == 1 && !isSet("NO_COLOR") && isSet("TERM") && std::strcmp(terminal, "dumb") != 0;
}

std::string tinted(Tint tint, const std::string& text, int fd)
{
    if (tint == Tint::none || text.empty() || !showsColours(fd))
        return text;
    // Bold red stands out also where red is dark.
    const char* const colour = tint == Tint::good ? "32" : tint == Tint::doubtful ? "33" : "1;31";
    return "\x1B[" + std::string(colour) + "m" + text + "\x1B[0m";
}

} // namespace tool

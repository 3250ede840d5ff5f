#include "log/line.h"

#include "common/text.h"

#include <algorithm>
#include <charconv>
#include <ctime>

namespace tool {

namespace {

constexpr std::string_view kSeparator = " : ";
constexpr size_t kMicrosecondDigits = 6;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isIdentifier(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// Takes what stands before the mark off the text, and the mark too.
std::optional<std::string_view> takeUntil(std::string_view& text, std::string_view mark)
{
    const size_t end = text.find(mark);
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(end + mark.size());
    return taken;
}

template <class T>
std::optional<T> number(std::string_view digits)
{
    T value{};
    if (!std::ranges::all_of(digits, isDigit))
        return std::nullopt;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return value;
}

// Takes the characters that are in a part off the text, and the mark behind them, which must follow.
template <class IsIn>
std::optional<std::string_view> takeAll(std::string_view& text, IsIn isIn, std::string_view mark)
{
    const auto end = static_cast<size_t>(std::ranges::find_if_not(text, isIn) - text.begin());
    const std::string_view taken = text.substr(0, end);
    if (!text.substr(end).starts_with(mark))
        return std::nullopt;
    text.remove_prefix(end + mark.size());
    return taken;
}

// "libvx63.cpp(42) vx63_init() : Start.". Looks no further than the first character that cannot be: there may
// be as many beginnings in a line as it has separators.
bool parsePlace(std::string_view text, LogLine& line)
{
    const auto isOfFile = [](char c) { return c != '(' && c != ' '; };
    const auto file = takeAll(text, isOfFile, "(");
    const auto lineText = file && !file->empty() ? takeAll(text, isDigit, ") ") : std::nullopt;
    const auto lineNumber = lineText ? number<uint32_t>(*lineText) : std::nullopt;
    const auto function = lineNumber ? takeAll(text, isIdentifier, "() : ") : std::nullopt;
    if (!function || function->empty())
        return false;
    line.file = *file;
    line.line = *lineNumber;
    line.function = *function;
    line.message = text;
    return true;
}

// What the library's texts go on with: "[NAME], bDefault=0", "stat[3]=1", "[NAME]...".
bool isBehindBracket(std::string_view text)
{
    return text.empty() || text == "..." || text.starts_with('=') || text.starts_with(", ");
}

} // namespace

std::optional<LogLine> parseLogLine(std::string_view text)
{
    LogLine line{};
    const auto seconds = takeUntil(text, ".");
    const auto microseconds = takeUntil(text, kSeparator);
    if (!seconds || !microseconds || microseconds->size() != kMicrosecondDigits)
        return std::nullopt;
    const auto secondsNumber = number<int64_t>(*seconds);
    const auto microsecondsNumber = number<uint32_t>(*microseconds);
    if (!secondsNumber || !microsecondsNumber)
        return std::nullopt;
    line.seconds = *secondsNumber;
    line.microseconds = *microsecondsNumber;
    // A program may have any name, one with a separator in it too.
    for (size_t end = text.find(kSeparator); end != std::string_view::npos;
         end = text.find(kSeparator, end + 1)) {
        line.program = text.substr(0, end);
        if (parsePlace(text.substr(end + kSeparator.size()), line))
            return line;
    }
    return std::nullopt;
}

bool isFailure(const LogLine& line)
{
    // Only the text before the first value: a name among the values may be any word.
    const std::string_view words = line.message.substr(0, line.message.find('='));
    return words.find(" error.") != std::string_view::npos ||
           line.message.find("vx63_err=-") != std::string_view::npos;
}

Doubt LogDoubts::of(std::string_view text)
{
    const auto line = parseLogLine(text);
    const std::string_view message = line ? line->message : text;
    const size_t first = message.find_first_of("[]");
    const size_t last = message.find_last_of("[]");
    const bool any = last != std::string_view::npos;
    const bool closes = any && message[last] == ']' && isBehindBracket(message.substr(last + 1));
    const bool inName = m_open || (any && (message[first] == ']' || !closes));
    // Any bracket ends it, also that of the next name: a line that was cut short has none that does.
    if (any)
        m_open = !closes && (line || m_open);
    if (!line)
        return Doubt::form;
    return inName ? Doubt::name : printable(message) != message ? Doubt::bytes : Doubt::none;
}

std::string logLineText(std::string_view text, Doubt doubt)
{
    const std::string mark = doubt == Doubt::none ? "" : "? ";
    const auto line = parseLogLine(text);
    const auto seconds = line ? static_cast<time_t>(line->seconds) : time_t{};
    struct tm local {};
    if (!line || !localtime_r(&seconds, &local))
        return mark + printable(text);
    return mark +
           format("%04lld-%02d-%02d %02d:%02d:%02d.%06u", local.tm_year + 1900LL, local.tm_mon + 1,
                  local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, line->microseconds) +
           printable(text.substr(text.find(kSeparator)));
}

Json logLineJson(std::string_view text, Doubt doubt)
{
    constexpr const char* kDoubts[] = {"", "form", "name", "bytes"};
    const auto line = parseLogLine(text);
    Json json = {{"time", nullptr},
                 {"program", nullptr},
                 {"file", nullptr},
                 {"line", nullptr},
                 {"function", nullptr},
                 {"message", nullptr},
                 {"text", nullptr},
                 {"doubt", doubt == Doubt::none ? Json() : Json(kDoubts[static_cast<size_t>(doubt)])}};
    if (!line) {
        json.set("text", text);
        return json;
    }
    json.set("time", static_cast<double>(line->seconds) + line->microseconds / 1e6);
    json.set("program", line->program);
    json.set("file", line->file);
    json.set("line", line->line);
    json.set("function", line->function);
    json.set("message", line->message);
    return json;
}

} // namespace tool

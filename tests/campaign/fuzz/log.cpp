// Reads any bytes as the library's log: the same lines in whatever pieces they come, parsed as a slow reader
// parses them, told on one printable line, as JSON that says the same.
#include "held.h"
#include "log/line.h"
#include "log/reader.h"

#include <nlohmann/json.hpp>
#include <vector>

using held::require;
using namespace tool;

namespace {

using Lines = std::vector<std::string>;

bool isAll(std::string_view text, std::string_view of)
{
    return !text.empty() && text.find_first_not_of(of) == std::string_view::npos;
}

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kLetters = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_";

// A number that is not too large, without leading zeros to compare.
bool isNumber(std::string_view text, std::string_view most)
{
    if (!isAll(text, kDigits))
        return false;
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    return text.size() < most.size() || (text.size() == most.size() && text <= most);
}

// The parts of "SECONDS.MICROS : PROGRAM : FILE(LINE) FUNCTION() : MESSAGE", program, file, function and
// message, the program as short as it can be; none where it is no such line.
Lines slowly(std::string_view text)
{
    const size_t point = text.find('.');
    const size_t first = point == std::string_view::npos ? point : text.find(" : ", point);
    if (first == std::string_view::npos || !isNumber(text.substr(0, point), "9223372036854775807") ||
        !isAll(text.substr(point + 1, first - point - 1), kDigits) || first - point - 1 != 6)
        return {};
    const std::string_view rest = text.substr(first + 3);
    for (size_t end = rest.find(" : "); end != std::string_view::npos; end = rest.find(" : ", end + 1)) {
        const std::string_view place = rest.substr(end + 3);
        const size_t open = place.find('(');
        const size_t close = open == std::string_view::npos ? open : place.find(") ", open);
        const size_t last = close == std::string_view::npos ? close : place.find("() : ", close + 2);
        if (last == std::string_view::npos)
            continue;
        const std::string_view file = place.substr(0, open);
        const std::string_view function = place.substr(close + 2, last - close - 2);
        if (!file.empty() && file.find(' ') == std::string_view::npos && isAll(function, kLetters) &&
            isNumber(place.substr(open + 1, close - open - 1), "4294967295"))
            return {std::string(rest.substr(0, end)), std::string(file), std::string(function),
                    std::string(place.substr(last + 5))};
    }
    return {};
}

void judgeLine(const std::string& text, LogDoubts& doubts)
{
    const auto line = parseLogLine(text);
    const Lines parts = slowly(text);
    require(line.has_value() != parts.empty(), "a line is read otherwise", text);
    if (line)
        require(Lines{std::string(line->program), std::string(line->file), std::string(line->function),
                      std::string(line->message)} == parts,
                "a part of a line is read otherwise", text);
    const Doubt doubt = doubts.of(text);
    require((doubt == Doubt::form) == !line, "the form is doubted otherwise", text);
    require(held::isPrintable(logLineText(text, doubt)), "a line is not printable", text);
    require(logLineText(text, doubt).starts_with("? ") || doubt == Doubt::none, "a doubt is not told", text);
    const std::string told = logLineJson(text, doubt).line();
    const auto json = nlohmann::json::parse(told, nullptr, false);
    require(json.is_object() && held::isPrintable(told.substr(0, told.size() - 1)), "the JSON of a line",
            told);
    require(json["text"].is_null() == line.has_value() && json["message"].is_string() == line.has_value(),
            "the JSON tells otherwise", told);
    if (line && held::isPrintable(line->message))
        require(json["message"] == line->message, "the JSON tells another message", told);
    if (line)
        isFailure(*line);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr size_t kMost = 1 << 14; // the slow reader looks on to the end at each beginning
    if (size == 0 || size > kMost)
        return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    Lines whole, pieces, read;
    LineSplitter one, many;
    one.feed(bytes, [&](std::string_view line) { whole.emplace_back(line); });
    one.finish([&](std::string_view line) { whole.emplace_back(line); });
    const size_t step = data[0] % 16 + 1;
    for (size_t at = 0; at < bytes.size(); at += step)
        many.feed(bytes.substr(at, step), [&](std::string_view line) { pieces.emplace_back(line); });
    many.finish([&](std::string_view line) { pieces.emplace_back(line); });
    require(whole == pieces, "other lines in pieces");
    std::string joined;
    for (const std::string& line : whole)
        joined += line + "\n";
    require(joined == bytes || joined == std::string(bytes) + "\n", "other lines than the file has");

    const held::File file(bytes);
    LogReader reader(file.path());
    require(reader.open(), "the file cannot be opened");
    for (int i = 0; i < 2; ++i) // the second time there is nothing new
        reader.read([&](std::string_view line) { read.emplace_back(line); });
    reader.finish([&](std::string_view line) { read.emplace_back(line); });
    require(read == whole, "other lines from the file");

    LogDoubts doubts;
    for (const std::string& line : whole)
        judgeLine(line, doubts);
    return 0;
}

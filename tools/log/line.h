// One line of the library's log: "1700000000.123456 : program : libvx63.cpp(42) vx63_init() : Start.".
#pragma once

#include "common/json.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

// The views lie in the text that was parsed.
struct LogLine {
    int64_t seconds; // Unix time
    uint32_t microseconds;
    std::string_view program;
    std::string_view file;
    uint32_t line;
    std::string_view function;
    std::string_view message;
};

// Nothing when the text is not such a line: cut short, or written by something else.
std::optional<LogLine> parseLogLine(std::string_view text);

// The line tells of a failure: it names an error, or a negative result.
bool isFailure(const LogLine& line);

// The text for people: the time as local date and time, the rest as it is; safe on a terminal.
std::string logLineText(std::string_view text);

// The fields as an object; of a text that is no log line only "text".
Json logLineJson(std::string_view text);

} // namespace tool

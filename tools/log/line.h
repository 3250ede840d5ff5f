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

// Why a line cannot be trusted. A set's name, which the library writes as it is, may hold newlines and with
// them whole lines.
enum class Doubt {
    none,
    form,  // it is no log line
    name,  // brackets without their other one, or between such
    bytes, // some are not printable
};

// Judges the lines of a log in their order.
class LogDoubts {
public:
    Doubt of(std::string_view text);

private:
    bool m_open = false; // a line before has a bracket that none has closed yet
};

// The text for people: the time as local date and time, the rest as it is; safe on a terminal. One in doubt
// is marked.
std::string logLineText(std::string_view text, Doubt doubt = Doubt::none);

// The fields as an object; of a text that is no log line only "text".
Json logLineJson(std::string_view text, Doubt doubt = Doubt::none);

} // namespace tool

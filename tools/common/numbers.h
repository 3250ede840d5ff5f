// Numbers: on the command line, and as they are told.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

// Decimal digits, or 0x and hexadecimal ones; nothing else, so that 010 is ten and -1 is refused.
std::optional<uint64_t> parseNumber(std::string_view text);

// The number, from lowest to highest. Throws WrongUsage.
uint64_t numberIn(const std::string& option, const std::string& text, uint64_t lowest, uint64_t highest);

// Seconds with or without a fraction, from lowest to highest, as milliseconds. Throws WrongUsage.
int64_t secondsIn(const std::string& option, const std::string& text, double lowest, double highest);

// To so many decimals, and never to -0; no number stays none.
double rounded(double value, int decimals);

// To so many significant digits.
double significant(double value, int digits);

} // namespace tool

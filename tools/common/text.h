// Text for people.
#pragma once

#include <string>
#include <string_view>

namespace tool {

// The text as one line that is safe on a terminal: control characters and bytes that are no UTF-8 as
// \xNN; tabs and everything printable as they are.
std::string printable(std::string_view text);

// Whether the words are the same in any case of ASCII letters.
bool sameWord(std::string_view a, std::string_view b);

// printf into a string.
[[gnu::format(printf, 1, 2)]] std::string format(const char* pattern, ...);

// A value that comes in tenths: 623 as "62.3".
std::string tenths(uint32_t value);

} // namespace tool

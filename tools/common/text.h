// Text for people.
#pragma once

#include "cli/printable.h"

#include <cstring>
#include <string>
#include <string_view>

namespace tool {

using cli::printable;

// Whether the words are the same in any case of ASCII letters.
bool sameWord(std::string_view a, std::string_view b);

// printf into a string.
[[gnu::format(printf, 1, 2)]] std::string format(const char* pattern, ...);

// A value that comes in tenths: 623 as "62.3".
std::string tenths(uint32_t value);

// A field of a record, which ends at its null byte or its width.
template <size_t kWidth>
std::string fieldText(const char (&field)[kWidth])
{
    return {field, strnlen(field, kWidth)};
}

} // namespace tool

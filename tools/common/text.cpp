#include "common/text.h"

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <cstdint>
#include <cstdio>

namespace tool {

bool sameWord(std::string_view a, std::string_view b)
{
    return std::ranges::equal(
        a, b, [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

std::string format(const char* pattern, ...)
{
    va_list arguments;
    va_start(arguments, pattern);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, pattern, arguments);
    va_end(arguments);
    std::string result(length > 0 ? static_cast<size_t>(length) : 0, '\0');
    std::vsnprintf(result.data(), result.size() + 1, pattern, again);
    va_end(again);
    return result;
}

std::string tenths(uint32_t value)
{
    return format("%u.%u", value / 10, value % 10);
}

} // namespace tool

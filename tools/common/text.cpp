#include "common/text.h"

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <cstdint>
#include <cstdio>

namespace tool {

namespace {

// Bytes of the UTF-8 character at the start of the text; 0 when there is none.
size_t utf8Length(std::string_view text)
{
    const auto byte = [&](size_t i) -> unsigned { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    const size_t length = first < 0x80   ? 1
                          : first < 0xC2 ? 0
                          : first < 0xE0 ? 2
                          : first < 0xF0 ? 3
                          : first < 0xF5 ? 4
                                         : 0;
    if (length > text.size())
        return 0;
    for (size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
    // Not the shortest form, surrogates, beyond the last code point.
    if ((first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) > 0x9F) ||
        (first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) > 0x8F))
        return 0;
    return length;
}

bool isControl(std::string_view character)
{
    const auto first = static_cast<unsigned char>(character[0]);
    return (first < 0x20 && first != '\t') || first == 0x7F ||
           (first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0); // U+0080 to U+009F
}

} // namespace

std::string printable(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const size_t length = utf8Length(text);
        const std::string_view character = text.substr(0, std::max<size_t>(length, 1));
        if (length == 0 || isControl(character)) {
            for (const char c : character)
                result += format("\\x%02X", static_cast<unsigned char>(c));
        } else {
            result += character;
        }
        text.remove_prefix(character.size());
    }
    return result;
}

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

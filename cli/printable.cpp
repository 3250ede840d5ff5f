#include "cli/printable.h"

#include <algorithm>
#include <cstddef>

namespace cli {

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

std::string hexOf(unsigned char c)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    return {'\\', 'x', kDigits[c >> 4], kDigits[c & 0xF]};
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
                result += hexOf(static_cast<unsigned char>(c));
        } else {
            result += character;
        }
        text.remove_prefix(character.size());
    }
    return result;
}

} // namespace cli

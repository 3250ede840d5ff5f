#include "live/grid.h"

#include "common/terminal.h"
#include "common/text.h"

#include <algorithm>

namespace tool {

namespace {

// That what is taken off the text, which is valid UTF-8, is one.
char32_t takeCharacter(std::string_view& text)
{
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(i < text.size() ? text[i] : 0); };
    const size_t length = byte(0) < 0x80 ? 1 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
    char32_t character = byte(0) & (length == 1 ? 0x7F : 0xFF >> (length + 1));
    for (size_t i = 1; i < length; ++i)
        character = character << 6 | (byte(i) & 0x3F);
    text.remove_prefix(std::min(length, text.size()));
    return character;
}

// Letters of names may be two characters wide, or none.
bool isNarrow(char32_t character)
{
    return (character >= 0x20 && character < 0x7F) || (character >= 0xA1 && character < 0x300) ||
           (character >= 0x2500 && character < 0x2600) || (character >= 0x2800 && character < 0x2900);
}

void append(std::string& text, char32_t character)
{
    const auto tail = [&](int shift) { text += static_cast<char>(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | character >> 6);
        tail(0);
    } else {
        text += static_cast<char>(0xE0 | character >> 12);
        tail(6);
        tail(0);
    }
}

} // namespace

void Grid::put(size_t column, size_t row, char32_t character, Look look)
{
    if (column >= m_columns || row >= m_rows)
        return;
    const bool shown = isNarrow(character) && (m_unicode || character < 0x7F);
    m_cells[row * m_columns + column] = {shown ? character : U'?', look};
}

size_t Grid::text(size_t column, size_t row, std::string_view text, Look look)
{
    const std::string safe = printable(text);
    for (std::string_view rest = safe; !rest.empty(); ++column) {
        const char32_t character = takeCharacter(rest);
        put(column, row, character == U'\t' ? U' ' : character, look);
    }
    return column;
}

void Grid::textBefore(size_t end, size_t row, std::string_view text, Look look)
{
    const size_t width = widthOf(printable(text));
    this->text(end - std::min(end, width), row, text, look);
}

std::string Grid::line(size_t row) const
{
    std::string line;
    for (size_t column = 0; column < m_columns; ++column)
        append(line, at(column, row).character);
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

} // namespace tool

// Makes factory contents at compile time: rows of cells, as they would stand in a CSV file, are packed into
// records as their columns say. A cell that its column cannot hold does not compile.
#pragma once

#include "libvx63_settings.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vx63 {

// A record of a file, and a whole file.
template <uint32_t kFileId>
using Record = std::array<uint8_t, settings::kFiles[kFileId].dataSize>;
template <uint32_t kFileId, size_t kRows = settings::kFiles[kFileId].rows>
using Records = std::array<Record<kFileId>, kRows>;

// A text cell, composed piece by piece.
class Text {
public:
    constexpr Text() = default;
    consteval Text(std::string_view text) { *this += text; }
    consteval Text& operator+=(std::string_view text)
    {
        for (const char letter : text) {
            m_letters.at(m_length++) = letter;
        }
        return *this;
    }
    consteval std::string_view view() const { return {m_letters.data(), m_length}; }

private:
    std::array<char, 16> m_letters = {};
    size_t m_length = 0;
};

// A prefix and a number, filled up with zeros to so many digits.
consteval Text numbered(std::string_view prefix, uint32_t number, uint32_t digits = 1)
{
    uint32_t power = 1;
    for (uint32_t i = 1; i < digits || number / power >= 10; ++i) {
        power *= 10;
    }
    Text text(prefix);
    for (; power != 0; power /= 10) {
        const char digit = static_cast<char>('0' + number / power % 10);
        text += std::string_view(&digit, 1);
    }
    return text;
}

// A cell of a CSV file: a number or a text.
class Cell {
public:
    constexpr Cell() = default;
    consteval Cell(std::integral auto number) : m_number(number) {}
    consteval Cell(const char* text) : m_isText(true), m_text(text) {}
    consteval Cell(const Text& text) : m_isText(true), m_text(text) {}

    consteval bool fits(const settings::Column& column) const
    {
        if (column.type == settings::kText) {
            return m_isText && m_text.view().size() < column.width;
        }
        const int64_t values = int64_t{1} << (8 * column.width);
        return !m_isText &&
               (column.type == settings::kSigned ? -values / 2 <= m_number && m_number < values / 2
                                                 : 0 <= m_number && m_number < values);
    }

    // Fills the field of a record that is zero so far.
    consteval void store(uint8_t* field, const settings::Column& column) const
    {
        if (column.type == settings::kText) {
            for (const char letter : m_text.view()) {
                *field++ = static_cast<uint8_t>(letter);
            }
        } else {
            for (uint32_t i = 0; i < column.width; ++i) { // little-endian
                field[i] = static_cast<uint8_t>(static_cast<uint64_t>(m_number) >> (8 * i));
            }
        }
    }

private:
    int64_t m_number = 0;
    bool m_isText = false;
    Text m_text;
};

// Not defined: what calls it while it compiles, does not compile.
void cellDoesNotFitItsColumn();
void recordsAreMissing();

// One record from its cells.
template <uint32_t kFileId>
consteval Record<kFileId> record(const Cell (&cells)[settings::kFiles[kFileId].columnCount])
{
    Record<kFileId> bytes = {};
    const settings::Column* column = settings::kFiles[kFileId].columns;
    for (const Cell& cell : cells) {
        if (!cell.fits(*column)) {
            cellDoesNotFitItsColumn();
        }
        cell.store(&bytes.at(column->offset), *column);
        ++column;
    }
    return bytes;
}

// A whole file from its rows.
template <uint32_t kFileId, size_t kRows>
consteval Records<kFileId, kRows> records(const Cell (&rows)[kRows][settings::kFiles[kFileId].columnCount])
{
    Records<kFileId, kRows> file = {};
    for (size_t i = 0; i < kRows; ++i) {
        file[i] = record<kFileId>(rows[i]);
    }
    return file;
}

} // namespace vx63

// Tables for people, as narrow as their terminal: what does not fit goes on in the next line.
#pragma once

#include "common/terminal.h"

#include <concepts>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tool {

struct Cell {
    template <class Text>
    requires std::constructible_from<std::string, Text> Cell(Text&& words, Tint colour = Tint::none)
        : text(std::forward<Text>(words)), tint(colour)
    {}

    std::string text;
    Tint tint;
};

using Table = std::vector<std::vector<Cell>>; // rows of cells, the headings first

// One line a row, every column as wide as its widest cell; safe on a terminal. Where that is wider than the
// terminal, the last column is wrapped, or else the columns that do not fit stand indented in further lines.
//   alignment  '>' for a column that is aligned on the right: "<>>"
std::string table(const Table& rows, std::string_view alignment = "");

// The same for rows that come one by one, in columns as wide as those of a table that is known before.
class TableRows {
public:
    explicit TableRows(const Table& widest, std::string_view alignment = "");
    std::string row(const std::vector<Cell>& cells) const;

private:
    struct Band { // columns that stand in one line
        size_t indent;
        std::vector<size_t> columns;
    };

    void breakInto(size_t columns);
    std::string lines(const Band& band, const std::vector<Cell>& cells) const;

    std::string_view m_alignment;
    std::vector<size_t> m_widths;
    std::vector<Band> m_bands;
};

// One text in lines no longer than the terminal is wide.
std::string paragraph(const std::string& text);

// "Label  value" lines, the values in one column.
using Rows = std::vector<std::pair<std::string, Cell>>;
std::string aligned(const Rows& rows);

} // namespace tool

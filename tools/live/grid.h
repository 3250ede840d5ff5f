// A screen full of characters, and how each looks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

enum class Look : uint8_t { plain, bold, faint, good, doubtful, bad };

struct GridCell {
    char32_t character = U' ';
    Look look = Look::plain;
    bool operator==(const GridCell&) const = default;
};

class Grid {
public:
    //   unicode  without it, what is no ASCII becomes '?'
    Grid(size_t columns, size_t rows, bool unicode)
        : m_columns(columns), m_rows(rows), m_unicode(unicode), m_cells(columns * rows)
    {}

    size_t columns() const { return m_columns; }
    size_t rows() const { return m_rows; }
    bool unicode() const { return m_unicode; }

    // What lies outside is left out.
    void put(size_t column, size_t row, char32_t character, Look look = Look::plain);

    // UTF-8, as far as there is room. Of other texts than our own: safe, and a character wide each. Returns
    // the column behind it.
    size_t text(size_t column, size_t row, std::string_view text, Look look = Look::plain);
    void textBefore(size_t end, size_t row, std::string_view text, Look look = Look::plain);

    const GridCell& at(size_t column, size_t row) const { return m_cells[row * m_columns + column]; }
    std::string line(size_t row) const; // UTF-8, without the blanks at its end

private:
    size_t m_columns;
    size_t m_rows;
    bool m_unicode;
    std::vector<GridCell> m_cells;
};

} // namespace tool

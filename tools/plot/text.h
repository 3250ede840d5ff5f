// Drawings on a terminal: in Braille dots where it knows Unicode, in ASCII elsewhere.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tool {

struct TextStyle {
    size_t columns; // that the drawing may take
    bool unicode;
};

// That of standard output: the width of its terminal, else of COLUMNS, else 80; the character set of the
// locale.
TextStyle textStyle();

// A grid of dots. Where there is no Unicode a dot is a character.
class DotCanvas {
public:
    DotCanvas(size_t columns, size_t rows, bool unicode);

    size_t width() const { return m_columns * dotsAcross(); }
    size_t height() const { return m_rows * dotsDown(); }

    // Coordinates from the upper left corner; what lies outside is not drawn.
    void dot(long x, long y);

    // A character of its own, in place of the dots in its cell.
    void mark(long x, long y, char character);

    // One line a row, without newlines.
    std::vector<std::string> rows() const;

private:
    size_t dotsAcross() const { return m_unicode ? 2 : 1; }
    size_t dotsDown() const { return m_unicode ? 4 : 1; }

    unsigned* cellAt(long x, long y); // null outside

    size_t m_columns;
    size_t m_rows;
    bool m_unicode;
    std::vector<char> m_marks;     // NUL: none
    std::vector<unsigned> m_cells; // Unicode: the dots of a Braille character; ASCII: how many fell there
};

// Bars side by side, from low to high, a character wide: with eighths of a character or, in ASCII, whole
// ones.
std::vector<std::string> barRows(const std::vector<double>& values, double low, double high, size_t rows,
                                 bool unicode);

} // namespace tool

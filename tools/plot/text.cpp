#include "plot/text.h"

#include "cli/columns.h"
#include "common/terminal.h"

#include <algorithm>
#include <cmath>
#include <unistd.h>

namespace tool {

namespace {

constexpr size_t kLeastColumns = 20;
constexpr size_t kMostColumns = 240;

} // namespace

TextStyle textStyle()
{
    return {std::clamp(cli::columnsOf(STDOUT_FILENO).value_or(80), kLeastColumns, kMostColumns), isUnicode()};
}

DotCanvas::DotCanvas(size_t columns, size_t rows, bool unicode)
    : m_columns(columns), m_rows(rows), m_unicode(unicode), m_marks(columns * rows), m_cells(columns * rows)
{}

unsigned* DotCanvas::cellAt(long x, long y)
{
    if (x < 0 || y < 0 || x >= static_cast<long>(width()) || y >= static_cast<long>(height()))
        return nullptr;
    return &m_cells[static_cast<size_t>(y) / dotsDown() * m_columns + static_cast<size_t>(x) / dotsAcross()];
}

void DotCanvas::mark(long x, long y, char character)
{
    if (const unsigned* cell = cellAt(x, y))
        m_marks[static_cast<size_t>(cell - m_cells.data())] = character;
}

void DotCanvas::dot(long x, long y)
{
    unsigned* cell = cellAt(x, y);
    if (cell == nullptr)
        return;
    if (!m_unicode) {
        ++*cell;
        return;
    }
    // The bits of U+2800 to U+28FF: the first three rows column by column, then the fourth one.
    static constexpr unsigned kBits[4][2] = {{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}};
    *cell |= kBits[y % 4][x % 2];
}

std::vector<std::string> DotCanvas::rows() const
{
    std::vector<std::string> result;
    for (size_t row = 0; row < m_rows; ++row) {
        std::string& line = result.emplace_back();
        for (size_t column = 0; column < m_columns; ++column) {
            const unsigned cell = m_cells[row * m_columns + column];
            if (const char mark = m_marks[row * m_columns + column])
                line += mark;
            else if (!m_unicode)
                line += cell == 0 ? ' ' : cell < 3 ? '.' : cell < 8 ? 'o' : '#';
            else if (cell == 0)
                line += ' ';
            else
                line +=
                    {'\xE2', static_cast<char>(0xA0 | cell >> 6), static_cast<char>(0x80 | (cell & 0x3F))};
        }
    }
    return result;
}

std::vector<std::string> barRows(const std::vector<double>& values, double low, double high, size_t rows,
                                 bool unicode)
{
    static constexpr const char* kEighths[] = {" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
    std::vector<std::string> result;
    for (size_t row = rows; row-- > 0;) {
        std::string& line = result.emplace_back();
        for (const double value : values) {
            const double full =
                std::clamp((value - low) / (high - low), 0.0, 1.0) * static_cast<double>(rows);
            const double part = std::clamp(full - static_cast<double>(row), 0.0, 1.0);
            if (unicode)
                line += kEighths[std::lround(part * 8)];
            else
                line += part >= 0.5 ? '#' : ' ';
        }
    }
    return result;
}

} // namespace tool

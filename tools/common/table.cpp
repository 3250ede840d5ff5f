#include "common/table.h"

#include "cli/columns.h"
#include "common/text.h"

#include <algorithm>
#include <cstdint>
#include <unistd.h>

namespace tool {

namespace {

constexpr size_t kGap = 2;
constexpr size_t kIndent = 2;
constexpr size_t kLeastWrapped = 16; // a narrower column is not worth wrapping

} // namespace

TableRows::TableRows(const Table& widest, std::string_view alignment) : m_alignment(alignment)
{
    for (const auto& row : widest) {
        m_widths.resize(std::max(m_widths.size(), row.size()));
        for (size_t i = 0; i < row.size(); ++i)
            m_widths[i] = std::max(m_widths[i], widthOf(printable(row[i].text)));
    }
    breakInto(cli::columnsOf(STDOUT_FILENO).value_or(SIZE_MAX));
}

std::string TableRows::row(const std::vector<Cell>& cells) const
{
    std::string text;
    for (const Band& band : m_bands)
        text += lines(band, cells);
    return text;
}

void TableRows::breakInto(size_t columns)
{
    m_bands.push_back({0, {}});
    size_t used = 0;
    for (size_t i = 0; i < m_widths.size(); ++i) {
        const bool last = i + 1 == m_widths.size();
        const size_t room = columns > used ? columns - used : 0;
        if (m_widths[i] > room && !(last && room >= std::min(m_widths[i], kLeastWrapped)) &&
            !m_bands.back().columns.empty()) {
            m_bands.push_back({kIndent, {}});
            used = kIndent;
        }
        m_bands.back().columns.push_back(i);
        if (m_widths[i] > columns - std::min(used, columns - 1))
            m_widths[i] = columns - std::min(used, columns - 1);
        used += m_widths[i] + kGap;
    }
}

std::string TableRows::lines(const Band& band, const std::vector<Cell>& cells) const
{
    std::vector<std::vector<std::string>> parts; // of each cell, line by line
    size_t height = 1;
    for (const size_t i : band.columns) {
        parts.push_back(i < cells.size() ? wrapped(printable(cells[i].text), m_widths[i])
                                         : std::vector<std::string>(1));
        height = std::max(height, parts.back().size());
    }
    std::string text;
    for (size_t k = 0; k < height; ++k) {
        std::string line(band.indent, ' ');
        size_t blanks = 0; // not written unless something follows
        for (size_t c = 0; c < band.columns.size(); ++c) {
            const size_t i = band.columns[c];
            const std::string part = k < parts[c].size() ? parts[c][k] : std::string();
            const size_t free = m_widths[i] - widthOf(part);
            const bool right = i < m_alignment.size() && m_alignment[i] == '>';
            blanks += right ? free : 0;
            if (!part.empty()) {
                line.append(blanks, ' ');
                line += tinted(i < cells.size() ? cells[i].tint : Tint::none, part, STDOUT_FILENO);
                blanks = 0;
            }
            blanks += (right ? 0 : free) + kGap;
        }
        if (line.size() > band.indent)
            text += line + '\n';
    }
    return text.empty() && &band == &m_bands.front() ? "\n" : text;
}

std::string table(const Table& rows, std::string_view alignment)
{
    const TableRows layout(rows, alignment);
    std::string text;
    for (const auto& row : rows)
        text += layout.row(row);
    return text;
}

std::string paragraph(const std::string& text)
{
    return table({{text}});
}

std::string aligned(const Rows& rows)
{
    Table cells;
    for (const auto& [label, value] : rows)
        cells.push_back({label, value});
    return table(cells);
}

} // namespace tool

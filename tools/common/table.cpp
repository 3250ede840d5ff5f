#include "common/table.h"

#include "common/text.h"

#include <algorithm>

namespace tool {

namespace {

// Characters of UTF-8: every byte but the continuations.
size_t widthOf(const std::string& text)
{
    return static_cast<size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

} // namespace

std::string table(const std::vector<std::vector<std::string>>& rows)
{
    std::vector<std::vector<std::string>> cells = rows;
    std::vector<size_t> widths;
    for (auto& row : cells) {
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t i = 0; i < row.size(); ++i) {
            row[i] = printable(row[i]);
            widths[i] = std::max(widths[i], widthOf(row[i]));
        }
    }
    std::string result;
    for (const auto& row : cells) {
        std::string line;
        for (size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            line.append(widths[i] - widthOf(row[i]) + 2, ' ');
        }
        result += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
    }
    return result;
}

} // namespace tool

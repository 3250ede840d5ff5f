#include "live/digits.h"

namespace tool {

namespace {

struct Glyph {
    size_t width;                  // in dots, each two characters wide
    const char* lines[kDigitRows]; // '#': a dot
};

constexpr Glyph kDigits[] = {
    {3, {"###", "# #", "# #", "# #", "###"}}, {3, {" # ", "## ", " # ", " # ", "###"}},
    {3, {"###", "  #", "###", "#  ", "###"}}, {3, {"###", "  #", " ##", "  #", "###"}},
    {3, {"# #", "# #", "###", "  #", "  #"}}, {3, {"###", "#  ", "###", "  #", "###"}},
    {3, {"###", "#  ", "###", "# #", "###"}}, {3, {"###", "  #", "  #", "  #", "  #"}},
    {3, {"###", "# #", "###", "# #", "###"}}, {3, {"###", "# #", "###", "  #", "###"}},
};
constexpr Glyph kPoint = {1, {" ", " ", " ", " ", "#"}};
constexpr Glyph kDash = {3, {"   ", "   ", "###", "   ", "   "}};

const Glyph& glyphOf(char character)
{
    return character == '.' ? kPoint : character == '-' ? kDash : kDigits[(character - '0') % 10];
}

} // namespace

size_t largeWidth(std::string_view number)
{
    size_t width = 0;
    for (const char character : number)
        width += 2 * glyphOf(character).width + (width > 0 ? 1 : 0);
    return width;
}

void largeText(Grid& grid, size_t column, size_t row, std::string_view number, Look look)
{
    const char32_t dot = grid.unicode() ? U'█' : U'#';
    for (const char character : number) {
        const Glyph& glyph = glyphOf(character);
        for (size_t y = 0; y < kDigitRows; ++y)
            for (size_t x = 0; x < 2 * glyph.width; ++x)
                if (glyph.lines[y][x / 2] == '#')
                    grid.put(column + x, row + y, dot, look);
        column += 2 * glyph.width + 1;
    }
}

} // namespace tool

// Drawings on a terminal.
#include "plot/levels.h"
#include "plot/text.h"

#include <climits>
#include <gtest/gtest.h>

using namespace tool;

namespace {

using Lines = std::vector<std::string>;

TEST(DotCanvas, EachBrailleDot)
{
    const char* const expected[4][2] = {{"⠁", "⠈"}, {"⠂", "⠐"}, {"⠄", "⠠"}, {"⡀", "⢀"}};
    for (long y = 0; y < 4; ++y)
        for (long x = 0; x < 2; ++x) {
            DotCanvas canvas(1, 1, true);
            canvas.dot(x, y);
            EXPECT_EQ(canvas.rows(), Lines{expected[y][x]});
        }
}

TEST(DotCanvas, CellsDotsAndMarks)
{
    DotCanvas canvas(3, 2, true);
    EXPECT_EQ(canvas.width(), 6u);
    EXPECT_EQ(canvas.height(), 8u);
    for (long y = 0; y < 4; ++y)
        for (long x = 2; x < 4; ++x)
            canvas.dot(x, y);
    canvas.dot(5, 7);
    canvas.mark(0, 7, '+');
    EXPECT_EQ(canvas.rows(), (Lines{" ⣿ ", "+ ⢀"}));
}

TEST(DotCanvas, AsciiTellsHowMany)
{
    DotCanvas canvas(4, 1, false);
    canvas.dot(1, 0);
    for (int i = 0; i < 3; ++i)
        canvas.dot(2, 0);
    for (int i = 0; i < 8; ++i)
        canvas.dot(3, 0);
    EXPECT_EQ(canvas.rows(), Lines{" .o#"});
}

TEST(DotCanvas, OutsideIsNotDrawn)
{
    DotCanvas canvas(1, 1, true);
    for (const long far : {-1L, 4L, LONG_MIN, LONG_MAX}) {
        canvas.dot(far, 0);
        canvas.dot(0, far);
        canvas.mark(far, far, 'x');
    }
    EXPECT_EQ(canvas.rows(), Lines{" "});
}

TEST(BarRows, Eighths)
{
    EXPECT_EQ(barRows({0, 5, 10, 12.5, 20, 99, -5}, 0, 20, 2, true), (Lines{"   ▂██ ", " ▄████ "}));
    EXPECT_EQ(barRows({0, 5, 10, 20}, 0, 20, 2, false), (Lines{"   #", " ###"}));
}

TEST(Levels, AnyNumberOfChannelsFits)
{
    for (const size_t count : {1u, 2u, 14u, 15u, 40u, 1001u}) {
        std::vector<LevelBar> bars(count, {"C101", 60, true, Verdict::pass});
        const std::string text = levelsText(bars, {20, false});
        size_t begin = 0;
        for (size_t end = text.find('\n'); end != std::string::npos;
             begin = end + 1, end = text.find('\n', begin))
            EXPECT_LE(end - begin, 20u) << count;
    }
}

} // namespace

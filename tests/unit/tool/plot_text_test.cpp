// Drawings on a terminal, and what lays out labels.
#include "plot/axis.h"
#include "plot/canvas.h"
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

TEST(RoundStep, TheNextOfOneTwoFive)
{
    const double cases[][2] = {{1, 1},     {1.1, 2},    {2, 2},     {2.5, 5},    {5, 5},
                               {5.1, 10},  {10, 10},    {42, 50},   {51, 100},   {0.5, 0.5},
                               {0.3, 0.5}, {0.11, 0.2}, {0.1, 0.1}, {0.06, 0.1}, {1001, 2000}};
    for (const auto& [least, step] : cases)
        EXPECT_NEAR(roundStep(least), step, 1e-9 * step) << least;
}

TEST(StepText, AsManyDecimalsAsTheStep)
{
    EXPECT_EQ(stepText(70, 10), "70");
    EXPECT_EQ(stepText(70, 1), "70");
    EXPECT_EQ(stepText(70.5, 0.5), "70.5");
    EXPECT_EQ(stepText(70, 0.2), "70.0");
    EXPECT_EQ(stepText(20.05, 0.05), "20.05");
    EXPECT_EQ(stepText(-0.0, 1), "0");
}

TEST(TextWidth, IsThatOfAWideFont)
{
    // Advances of a wide sans-serif font, in thousandths of its size.
    EXPECT_GE(textWidth("0123456789", 1), 6.36);
    EXPECT_GE(textWidth("not recognised", 1), 7.9);
    EXPECT_GE(textWidth("Levels of the channels, plan uhf", 1, true), 19.5);
    EXPECT_DOUBLE_EQ(textWidth("\u00B5", 12), textWidth("a", 12)); // a character, not a byte
    EXPECT_DOUBLE_EQ(textWidth("aa", 6), textWidth("a", 12));
}

// The line of the labels, without its newline.
std::string labelsOf(const LevelChart& chart, size_t columns)
{
    std::string text = levelsText(chart, {columns, false});
    text.pop_back();
    return text.substr(text.rfind('\n') + 1);
}

LevelChart channels(int first, int last)
{
    LevelChart chart{false, {}};
    for (int i = first; i <= last; ++i)
        chart.bars.push_back({std::to_string(i), 60, LevelKind::pass, 473.143 + 6.0 * (i - 13), 0});
    return chart;
}

LevelChart carriers(double first, double step, size_t count, double width = 0)
{
    LevelChart chart{true, {}};
    for (size_t i = 0; i < count; ++i)
        chart.bars.push_back({"", 60, LevelKind::pass, first + step * static_cast<double>(i), width});
    return chart;
}

TEST(Levels, NamesAreThinnedEvenly)
{
    EXPECT_EQ(labelsOf(channels(13, 16), 40), "dBuV 13  14  15  16");
    EXPECT_EQ(labelsOf(channels(13, 52), 40), "dBuV 13   23   33   43"); // two channels a column
    EXPECT_EQ(labelsOf(channels(13, 52), 80), "dBuV 13   18   23   28   33   38   43   48");
    EXPECT_EQ(labelsOf(channels(13, 32), 80),
              "dBuV 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30 31 32");
}

TEST(Levels, WhatIsTooMuchMakesNoHigherChart)
{
    LevelChart chart = channels(13, 16);
    chart.bars[1].level = 20000; // the meter can tell up to 429496729.5
    const std::string text = levelsText(chart, {40, false});
    EXPECT_TRUE(text.starts_with("160 |")) << text.substr(0, 80);
}

TEST(Levels, FrequenciesStandWhereTheyAre)
{
    // 69.75 to 95.25 MHz in 34, 74 and 194 columns.
    EXPECT_EQ(labelsOf(carriers(70, 0.1, 251), 40), "dBuV 70    75    80     85     90 MHz");
    EXPECT_EQ(labelsOf(carriers(70, 0.1, 251), 80),
              "dBuV 70   72    74    76   78    80    82    84    86   88    90    92 MHz");
    EXPECT_EQ(labelsOf(carriers(70, 0.1, 251), 200).substr(0, 40),
              "dBuV 70      71      72     73      74  ");
    // A single carrier: 1 MHz, in 14 columns.
    EXPECT_EQ(labelsOf(carriers(100, 1, 1), 20), "dBuV 99.5 100.0 MHz");
}

TEST(Levels, ACarrierIsAsWideAsItIs)
{
    // 718 to 738 MHz in 20 columns, the second carrier without a level.
    LevelChart chart = carriers(723, 10, 2, 10);
    chart.bars[1].level = 0;
    const std::string text = levelsText(chart, {26, false});
    EXPECT_EQ(text.substr(text.find(" 10 ")),
              " 10 |##########          \n    |##########          \ndBuV  720  725  730 MHz\n");
    // Without a width, a column; of two in one column the stronger.
    chart = {true,
             {{"", 20, LevelKind::pass, 100, 0},
              {"", 60, LevelKind::pass, 100.1, 0},
              {"", 30, LevelKind::pass, 200, 0}}};
    const std::string narrow = levelsText(chart, {26, false});
    EXPECT_EQ(narrow.substr(narrow.find(" 60 "), 26), " 60 |#                   \n");
    EXPECT_EQ(narrow.substr(narrow.find(" 10 "), 26), " 10 |#                  #\n");
}

TEST(Levels, AnyNumberOfChannelsFits)
{
    for (const size_t count : {1u, 2u, 14u, 15u, 40u, 1001u})
        for (const bool byFrequency : {false, true}) {
            LevelChart chart = carriers(10, 0.05, count);
            chart.byFrequency = byFrequency;
            for (LevelBar& bar : chart.bars)
                bar.name = "C101";
            const std::string text = levelsText(chart, {20, false});
            size_t begin = 0;
            for (size_t end = text.find('\n'); end != std::string::npos;
                 begin = end + 1, end = text.find('\n', begin))
                EXPECT_LE(end - begin, 20u) << count << byFrequency;
        }
}

} // namespace

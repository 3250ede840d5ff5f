// Tables and lines on narrow terminals, and in colour.
#include "common/failure.h"
#include "common/table.h"
#include "common/terminal.h"

#include <cstdlib>
#include <gtest/gtest.h>

using namespace tool;

namespace {

using Lines = std::vector<std::string>;

// Standard output of a test is no terminal: COLUMNS counts.
std::string tableAt(const char* columns, const Table& rows, std::string_view alignment = "")
{
    setenv("COLUMNS", columns, 1);
    const std::string text = table(rows, alignment);
    unsetenv("COLUMNS");
    return text;
}

const Table kChannels = {{"Channel", "kHz", "dBuV", "Verdict"},
                         {"27", "557143", "63.2", "pass"},
                         {"30", "575143", "9.1", "fail: level, no lock"}};

TEST(Table, ColumnsAreAsWideAsTheirWidestCell)
{
    EXPECT_EQ(table(kChannels, "<>>"), "Channel     kHz  dBuV  Verdict\n"
                                       "27       557143  63.2  pass\n"
                                       "30       575143   9.1  fail: level, no lock\n");
}

TEST(Table, LastColumnIsWrapped)
{
    EXPECT_EQ(tableAt("42", kChannels, "<>>"), "Channel     kHz  dBuV  Verdict\n"
                                               "27       557143  63.2  pass\n"
                                               "30       575143   9.1  fail: level, no\n"
                                               "                       lock\n");
}

TEST(Table, WhatHasNoRoomStandsInFurtherLines)
{
    EXPECT_EQ(tableAt("30", kChannels, "<>>"), "Channel     kHz  dBuV\n"
                                               "  Verdict\n"
                                               "27       557143  63.2\n"
                                               "  pass\n"
                                               "30       575143   9.1\n"
                                               "  fail: level, no lock\n");
    EXPECT_EQ(tableAt("12", {{"abc", "def", "ghi"}, {"1", "", ""}}), "abc  def\n  ghi\n1\n");
}

TEST(Table, IsSafeOnATerminal)
{
    EXPECT_EQ(table({{"a\x1B", "b"}, {"\xC3\xA4", "c"}}), "a\\x1B  b\n\xC3\xA4      c\n");
}

TEST(Rows, ValuesStandInOneColumn)
{
    EXPECT_EQ(aligned({{"Lock", "yes"}, {"Level", "62.9 dBuV"}}), "Lock   yes\nLevel  62.9 dBuV\n");
}

TEST(Terminal, TextIsBrokenAtBlanks)
{
    EXPECT_EQ(wrapped("one two three", 7), (Lines{"one two", "three"}));
    EXPECT_EQ(wrapped("one  two", 4), (Lines{"one", "two"}));
    EXPECT_EQ(wrapped("abcdefgh i", 3), (Lines{"abc", "def", "gh", "i"}));
    EXPECT_EQ(wrapped("", 5), Lines{""});
    EXPECT_EQ(wrapped("ab", 0), (Lines{"a", "b"}));
    EXPECT_EQ(wrapped("äöü äöü", 3), (Lines{"äöü", "äöü"}));
    EXPECT_EQ(cut("äöü", 2), "äö");
    EXPECT_EQ(cut("ab", 2), "ab");
    EXPECT_EQ(widthOf("äöü"), 3u);
}

TEST(Terminal, ColourOptionIsTakenOut)
{
    Lines words = {"scan", "--color", "always", "--plan", "uhf", "--", "--color=x"};
    takeColourOption(words);
    EXPECT_EQ(words, (Lines{"scan", "--plan", "uhf", "--", "--color=x"}));
    EXPECT_EQ(tinted(Tint::good, "pass", 1), "\x1B[32mpass\x1B[0m");
    EXPECT_EQ(tinted(Tint::doubtful, "x", 1), "\x1B[33mx\x1B[0m");
    EXPECT_EQ(tinted(Tint::bad, "x", 1), "\x1B[1;31mx\x1B[0m");
    EXPECT_EQ(tinted(Tint::none, "x", 1), "x");
    EXPECT_EQ(table({{"a", "b"}, {Cell("1", Tint::good), "2"}}), "a  b\n\x1B[32m1\x1B[0m  2\n");
    words = {"--color=never"};
    takeColourOption(words);
    EXPECT_TRUE(words.empty());
    EXPECT_EQ(tinted(Tint::good, "pass", 1), "pass");
    words = {"--color=auto"};
    takeColourOption(words);
    for (Lines wrong :
         {Lines{"--color"}, Lines{"--color", "--"}, Lines{"--color=", "a"}, Lines{"--color=red"}})
        EXPECT_THROW(takeColourOption(wrong), WrongUsage);
    Lines other = {"--colour", "never"};
    takeColourOption(other);
    EXPECT_EQ(other.size(), 2u);
}

} // namespace

#include "cli/suggestion.h"

#include <gtest/gtest.h>

namespace {

using cli::didYouMean;
using Words = std::vector<std::string>;

TEST(Suggestion, AtMostAThirdOfTheLettersIsWrong)
{
    EXPECT_EQ(didYouMean("mesure", {"scan", "measure"}), "did you mean 'measure'?"); // one less
    EXPECT_EQ(didYouMean("meassure", {"measure"}), "did you mean 'measure'?");       // one more
    EXPECT_EQ(didYouMean("neasure", {"measure"}), "did you mean 'measure'?");        // another one
    EXPECT_EQ(didYouMean("emasuer", {"measure"}), "did you mean 'measure'?");        // twice two exchanged
    EXPECT_EQ(didYouMean("abc", {"acb"}), "did you mean 'acb'?");
    EXPECT_EQ(didYouMean("abc", {"cba"}), "");
    EXPECT_EQ(didYouMean("abcdef", {"abcdxy"}), "did you mean 'abcdxy'?");
    EXPECT_EQ(didYouMean("abcde", {"abcxy"}), "");
    EXPECT_EQ(didYouMean("anything", Words{}), "");
    EXPECT_EQ(didYouMean(std::string(1000, 'a'), {"aa"}), "");
}

TEST(Suggestion, CaseDoesNotCount)
{
    EXPECT_EQ(didYouMean("UHF", {"uhf", "bs"}), "did you mean 'uhf'?");
    EXPECT_EQ(didYouMean("odfm", {"OFDM", "QPSK"}), "did you mean 'OFDM'?");
}

TEST(Suggestion, AbbreviationsComeFirstThenWhatIsNear)
{
    EXPECT_EQ(didYouMean("--lock", {"--lo", "--lock-timeout"}), "did you mean '--lock-timeout'?");
    EXPECT_EQ(didYouMean("bs-c", {"bs", "cs", "bs-cs"}), "did you mean 'bs-cs'?");
    EXPECT_EQ(didYouMean("--frequncy", {"--lo", "--freq"}), "did you mean '--freq'?");
    EXPECT_EQ(didYouMean("--identity", {"--id"}), "");
}

TEST(Suggestion, ThoseThatAreEquallyNearUpToThree)
{
    EXPECT_EQ(didYouMean("set", {"settings", "scan", "sets"}), "did you mean 'settings' or 'sets'?");
    EXPECT_EQ(didYouMean("no", {"none", "north", "note"}), "did you mean 'none' or 'north' or 'note'?");
    EXPECT_EQ(didYouMean("no", {"none", "north", "note", "now"}), "");
}

TEST(Suggestion, NothingForNumbersAndSingleLetters)
{
    EXPECT_EQ(didYouMean("3000", {"1000", "2000"}), "");
    EXPECT_EQ(didYouMean("-j", {"--json"}), "");
    EXPECT_EQ(didYouMean("", {"a"}), "");
}

TEST(Suggestion, NothingForAWordThatIsKnown)
{
    EXPECT_EQ(didYouMean("satellite", {"satellite", "satellite-2"}), "");
    EXPECT_EQ(didYouMean("64QAM", {"64QAM", "256QAM"}), "");
}

TEST(Suggestion, TheFolderCanBeLeftOut)
{
    EXPECT_EQ(didYouMean("volme", {"sys_set/volume"}), "did you mean 'sys_set/volume'?");
    EXPECT_EQ(didYouMean("sys_set/volme", {"sys_set/volume"}), "did you mean 'sys_set/volume'?");
    EXPECT_EQ(didYouMean("ch_st/volume", {"sys_set/volume"}), "did you mean 'sys_set/volume'?");
}

} // namespace

// Another program, run to its end.
#include "common/program.h"

#include <gtest/gtest.h>

using namespace tool;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds kPatience{60000};

TEST(Program, GetsItsInputAndIsHeard)
{
    const std::string much(1 << 20, 'x'); // more than a pipe holds
    const auto ended = runProgram({"sh", "-c", "cat; echo wrong >&2; exit 3"}, much, kPatience);
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->output, much);
    EXPECT_EQ(ended->errors, "wrong\n");
    EXPECT_EQ(ended->exitCode, 3);
    EXPECT_FALSE(ended->timedOut);
}

TEST(Program, NoShellReadsItsArguments)
{
    const auto ended = runProgram({"printf", "%s", "$HOME; `id` *"}, "", kPatience);
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->output, "$HOME; `id` *");
}

TEST(Program, ThatIsNotThere)
{
    EXPECT_FALSE(runProgram({"vx63-no-such-program"}, "", kPatience));
}

TEST(Program, ThatTakesTooLong)
{
    const auto ended = runProgram({"sleep", "600"}, "", milliseconds(50));
    ASSERT_TRUE(ended);
    EXPECT_TRUE(ended->timedOut);
    EXPECT_EQ(ended->exitCode, 128 + 9);
}

} // namespace

// A signal that comes just before the wait must not be slept through.
#include "common/interrupt.h"

#include <chrono>
#include <csignal>
#include <gtest/gtest.h>

using namespace tool;

TEST(Interruption, EndsAWaitThatBeginsAfterIt)
{
    ASSERT_NE(std::signal(SIGTERM, SIG_DFL), SIG_ERR);
    catchInterruption("");
    EXPECT_EQ(interruption(), 0);
    std::raise(SIGTERM);
    EXPECT_EQ(interruption(), SIGTERM);
    waitFor(std::chrono::hours(1));
}

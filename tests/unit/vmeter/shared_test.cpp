// The state that the service processes share, and what becomes of it when one of them dies.
#include "process/shared_meter.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace vmeter {
namespace {

// Runs something in a process that it does not survive.
template <class F>
void inProcess(F doomed)
{
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        doomed();
        _exit(0);
    }
    waitpid(pid, nullptr, 0);
}

TEST(SharedMeter, StartsAtZeroAndCountsWhatIsDone)
{
    SharedMeter shared(5, 2);
    EXPECT_EQ(shared.simMs(), 0u);
    EXPECT_EQ(shared.update([](State& state) { state.ulSimMs += 100; }), 100u);
    EXPECT_EQ(shared.simMs(), 100u);
}

TEST(SharedMeter, OtherProcessesSeeIt)
{
    SharedMeter shared(5, 2);
    inProcess([&] {
        shared.update([](State& state) { state.ulSimMs = 7; });
        ++shared.faultCounts()[1];
        shared.comeBackMs(4) = 300;
    });
    EXPECT_EQ(shared.simMs(), 7u);
    EXPECT_EQ(shared.faultCounts()[0], 0u);
    EXPECT_EQ(shared.faultCounts()[1], 1u);
    EXPECT_EQ(shared.comeBackMs(3), -1);
    EXPECT_EQ(shared.comeBackMs(4), 300);
}

TEST(SharedMeter, AProcessSuspendedInACallHoldsUpNobodyWhoOnlyLooks)
{
    SharedMeter shared(5, 0);
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        shared.update([](State& state) {
            state.ulSimMs = 7;
            raise(SIGSTOP);
        });
        _exit(0);
    }
    int how = 0;
    ASSERT_EQ(waitpid(pid, &how, WUNTRACED), pid);
    EXPECT_FALSE(shared.stateInTime());
    kill(pid, SIGCONT);
    ASSERT_EQ(waitpid(pid, &how, 0), pid);
    const auto state = shared.stateInTime();
    ASSERT_TRUE(state);
    EXPECT_EQ(state->ulSimMs, 7u);
}

TEST(SharedMeter, AProcessKilledInACallLeavesTheStateAsItWas)
{
    SharedMeter shared(5, 0);
    shared.update([](State& state) { state.ulSimMs = 7; });
    for (int i = 0; i < 3; ++i) {
        inProcess([&] {
            shared.update([](State& state) {
                state.ulSimMs = 99;
                raise(SIGKILL);
            });
        });
        EXPECT_EQ(shared.simMs(), 7u);
    }
    EXPECT_EQ(shared.update([](State& state) { ++state.ulSimMs; }), 8u);
}

} // namespace
} // namespace vmeter

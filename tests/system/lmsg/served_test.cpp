// lmsg_isServed(): who has a queue open.
#include "lmsg.h"
#include "lmsg_served.h"
#include "support/heap_count.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <mqueue.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Beyond the process ids of a meter, and those of the other tests.
constexpr uint8_t kId = 90;
constexpr uint8_t kOtherId = 91;

class Served : public testing::Test {
protected:
    Served() { removeQueues(); }
    ~Served() override { removeQueues(); }

    static void removeQueues()
    {
        mq_unlink("/vx63.90");
        mq_unlink("/vx63.91");
    }

    // What is seen while another process waits for a message.
    static int32_t seenWhileServed(uint8_t served, uint8_t asked)
    {
        int ready[2];
        EXPECT_EQ(0, pipe(ready));
        const pid_t service = fork();
        if (service == 0) {
            uint8_t buffer[LMSG_SIZE_MAX];
            lmsg_trcvMq(served, buffer, sizeof buffer, nullptr, 0); // opens it
            static_cast<void>(write(ready[1], "", 1) == 1);
            pause();
        }
        char byte;
        EXPECT_EQ(1, read(ready[0], &byte, 1));
        const int32_t seen = lmsg_isServed(asked);
        kill(service, SIGKILL);
        waitpid(service, nullptr, 0);
        close(ready[0]);
        close(ready[1]);
        return seen;
    }
};

TEST_F(Served, NoQueueIsMade)
{
    EXPECT_EQ(0, lmsg_isServed(kId));
    EXPECT_EQ(0, lmsg_isServed(kId));
}

TEST_F(Served, OurOwnDescriptorDoesNotCount)
{
    ASSERT_EQ(LMSG_OK, lmsg_tsndMq(kId, "x", 1, 0));
    EXPECT_EQ(1, lmsg_isServed(kId));
}

TEST_F(Served, AnotherProcessIsSeenAsLongAsItLives)
{
    EXPECT_EQ(2, seenWhileServed(kId, kId));
    EXPECT_EQ(1, lmsg_isServed(kId));
}

TEST_F(Served, AnotherQueueIsNotTakenForIt)
{
    const mqd_t made = mq_open("/vx63.91", O_RDWR | O_CREAT, 0600, nullptr);
    ASSERT_GE(made, 0);
    ASSERT_EQ(0, mq_close(made)); // the child would inherit it
    EXPECT_EQ(1, seenWhileServed(kId, kOtherId));
}

TEST_F(Served, AQueueThatWasMadeAnewIsAnother)
{
    ASSERT_EQ(LMSG_OK, lmsg_tsndMq(kId, "x", 1, 0));
    int ready[2];
    ASSERT_EQ(0, pipe(ready));
    const pid_t service = fork();
    if (service == 0) {
        uint8_t buffer[LMSG_SIZE_MAX];
        lmsg_trcvMq(kId, buffer, sizeof buffer, nullptr, 0);
        static_cast<void>(write(ready[1], "", 1) == 1);
        pause();
    }
    char byte;
    ASSERT_EQ(1, read(ready[0], &byte, 1));
    EXPECT_EQ(2, lmsg_isServed(kId));
    ASSERT_EQ(0, mq_unlink("/vx63.90"));
    ASSERT_EQ(LMSG_OK, lmsg_tsndMq(kId, "x", 1, 0));
    EXPECT_EQ(1, lmsg_isServed(kId));
    kill(service, SIGKILL);
    waitpid(service, nullptr, 0);
    close(ready[0]);
    close(ready[1]);
}

// Where the processes of other users are not even listed.
TEST_F(Served, WhatIsHiddenIsNotTold)
{
    constexpr int kCannot = 99;
    const mqd_t made = mq_open("/vx63.90", O_RDWR | O_CREAT, 0600, nullptr);
    ASSERT_GE(made, 0);
    ASSERT_EQ(0, fchmod(made, 0666)); // whatever the mask is
    const pid_t looking = fork();
    if (looking == 0) {
        constexpr unsigned kNobody = 65534;
        mq_close(made);
        if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("proc", "/proc", "proc", 0, "hidepid=2") != 0 || setgroups(0, nullptr) != 0 ||
            setgid(kNobody) != 0 || setuid(kNobody) != 0)
            _exit(kCannot);
        _exit(lmsg_isServed(kId) & 0xFF);
    }
    int status = 0;
    waitpid(looking, &status, 0);
    mq_close(made);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == kCannot)
        GTEST_SKIP() << "mounts are not permitted";
    EXPECT_EQ(0xFF, WEXITSTATUS(status)); // -1
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

TEST_F(Served, NeverAsksForMemory)
{
    ASSERT_EQ(LMSG_OK, lmsg_tsndMq(kId, "x", 1, 0));
    const int64_t before = vx63test::t_heapCalls;
    EXPECT_EQ(1, lmsg_isServed(kId));
    EXPECT_EQ(0, lmsg_isServed(kOtherId));
    EXPECT_EQ(before, vx63test::t_heapCalls);
}

#endif

} // namespace

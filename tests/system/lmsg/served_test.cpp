// lmsg_isServed(): who has a queue open; lmsg_lookAt(): whose it is and what lies in it.
#include "libc_hooks.h"
#include "lmsg.h"
#include "lmsg_served.h"
#include "support/heap_count.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <mqueue.h>
#include <sched.h>
#include <string_view>
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
        return seenWhile([=] { return lmsg_isServed(asked); },
                         [=] {
                             uint8_t buffer[LMSG_SIZE_MAX];
                             lmsg_trcvMq(served, buffer, sizeof buffer, nullptr, 0); // opens it
                         });
    }

    // What `look` sees while another process is as `begin` has left it.
    template <class Look, class Begin>
    static int32_t seenWhile(Look look, Begin begin)
    {
        int ready[2];
        EXPECT_EQ(0, pipe(ready));
        const pid_t service = fork();
        if (service == 0) {
            begin();
            static_cast<void>(write(ready[1], "", 1) == 1);
            pause();
        }
        char byte;
        EXPECT_EQ(1, read(ready[0], &byte, 1));
        const int32_t seen = look();
        kill(service, SIGKILL);
        waitpid(service, nullptr, 0);
        close(ready[0]);
        close(ready[1]);
        return seen;
    }
};

// What lies in a queue.
uint32_t messages(uint8_t id)
{
    LmsgQueue queue{};
    EXPECT_EQ(0, lmsg_lookAt(id, &queue));
    return queue.messages;
}

TEST_F(Served, MessagesAreCounted)
{
    for (uint32_t sent = 1; sent <= 3; ++sent) {
        ASSERT_EQ(0, lmsg_tsndMq(kId, "message", 8, 0));
        EXPECT_EQ(sent, messages(kId));
    }
    uint8_t buffer[LMSG_SIZE_MAX];
    ASSERT_EQ(0, lmsg_trcvMq(kId, buffer, sizeof buffer, nullptr, 0));
    EXPECT_EQ(2u, messages(kId));
    ASSERT_EQ(0, lmsg_tsndMq(kOtherId, "message", 8, 0));
    EXPECT_EQ(1u, messages(kOtherId));
}

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

constexpr int kCannot = 99;

// Where the processes of other users are not even listed: a queue that is trusted is none of theirs.
TEST_F(Served, TheHiddenProcessesOfOthersAreNotNeeded)
{
    const mqd_t made = mq_open("/vx63.90", O_RDWR | O_CREAT, 0600, nullptr);
    ASSERT_GE(made, 0);
    if (fchown(made, 65534, 65534) != 0) {
        GTEST_SKIP() << "another user cannot be had";
    }
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
    EXPECT_EQ(1, WEXITSTATUS(status));
}

TEST_F(Served, OfAQueueThatOthersMayUseNothingIsTold)
{
    const mqd_t made = mq_open("/vx63.90", O_RDWR | O_CREAT, 0600, nullptr);
    ASSERT_GE(made, 0);
    ASSERT_EQ(0, fchmod(made, 0602));
    mq_close(made);
    EXPECT_EQ(-1, lmsg_isServed(kId));
}

TEST_F(Served, TheOwnerIsTold)
{
    LmsgQueue queue{1, 2, 3, 4};
    EXPECT_EQ(-1, lmsg_lookAt(kId, &queue));
    EXPECT_EQ(-1, lmsg_lookAt(kId, &queue)) << "none was made";
    EXPECT_EQ(1u, queue.user);
    EXPECT_EQ(2u, queue.mode);
    EXPECT_EQ(3u, queue.messages);
    EXPECT_EQ(4u, queue.trusted);
    const mqd_t made = mq_open("/vx63.90", O_RDWR | O_CREAT, 0600, nullptr);
    ASSERT_GE(made, 0);
    ASSERT_EQ(0, fchmod(made, 0646));
    EXPECT_EQ(0, lmsg_lookAt(kId, &queue));
    EXPECT_EQ(geteuid(), queue.user);
    EXPECT_EQ(0646u, queue.mode);
    EXPECT_EQ(0u, queue.trusted);
    EXPECT_EQ(0u, queue.messages);
    ASSERT_EQ(0, fchmod(made, 0600));
    EXPECT_EQ(0, lmsg_lookAt(kId, &queue));
    EXPECT_EQ(1u, queue.trusted);
    if (fchown(made, 65534, 65534) == 0) {
        EXPECT_EQ(0, lmsg_lookAt(kId, &queue));
        EXPECT_EQ(65534u, queue.user);
        EXPECT_EQ(0u, queue.trusted);
    }
    mq_close(made);
}

// In a child, with a capability less or a namespace more; gives what it saw, or kCannot.
template <class Look>
int seenInChild(Look look)
{
    const pid_t looking = fork();
    if (looking == 0)
        _exit(look());
    int status = 0;
    waitpid(looking, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

constexpr int kUnknown = 0xFF;

bool becomeNobody()
{
    return setgroups(0, nullptr) == 0 && setgid(65534) == 0 && setuid(65534) == 0;
}

TEST_F(Served, AnothersProcessesAreNoneOfItsServices)
{
    const int seen = seenInChild([] { // whose processes may not be looked at
        if (!becomeNobody() || lmsg_tsndMq(kId, "x", 1, 0) != LMSG_OK)
            return kCannot;
        return lmsg_isServed(kId) & 0xFF;
    });
    if (seen == kCannot)
        GTEST_SKIP() << "another user cannot be had";
    EXPECT_EQ(1, seen);
}

TEST_F(Served, OfAQueueThatCannotBeOpenedNothingIsTold)
{
    const mqd_t made = mq_open("/vx63.90", O_RDWR | O_CREAT, 0600, nullptr);
    ASSERT_GE(made, 0);
    mq_close(made);
    const int seen = seenInChild([] { return becomeNobody() ? lmsg_isServed(kId) & 0xFF : kCannot; });
    if (seen == kCannot)
        GTEST_SKIP() << "another user cannot be had";
    EXPECT_EQ(kUnknown, seen);
}

TEST_F(Served, AnEmptyListOfProcessesTellsNothing)
{
    ASSERT_EQ(LMSG_OK, lmsg_tsndMq(kId, "x", 1, 0));
    const int seen = seenInChild([] {
        if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("none", "/proc", "tmpfs", 0, nullptr) != 0)
            return kCannot;
        return lmsg_isServed(kId) & 0xFF;
    });
    if (seen == kCannot)
        GTEST_SKIP() << "mounts are not permitted";
    EXPECT_EQ(kUnknown, seen);
}

TEST_F(Served, WhatTheKernelDoesNotTellIsUnknown)
{
    ASSERT_EQ(LMSG_OK, lmsg_tsndMq(kId, "x", 1, 0));
    for (const char* failing : {"fstat", "mq_getattr"}) {
        hooks::s_onCall = [=](const char* call) { return std::string_view(call) == failing ? EIO : 0; };
        LmsgQueue queue{1, 2, 3, 4};
        EXPECT_EQ(-1, lmsg_isServed(kId)) << failing;
        EXPECT_EQ(-1, lmsg_lookAt(kId, &queue)) << failing;
        EXPECT_EQ(3u, queue.messages) << failing;
        hooks::reset();
    }
    EXPECT_EQ(1, lmsg_isServed(kId));
}

// Whatever the number under which the other process has it.
TEST_F(Served, AnyDescriptorOfAnotherProcessIsSeen)
{
    for (const int number : {0, 9, 10, 90}) {
        EXPECT_EQ(2, seenWhile([] { return lmsg_isServed(kId); },
                               [=] {
                                   const mqd_t made = mq_open("/vx63.90", O_RDWR | O_CREAT, 0600, nullptr);
                                   if (made == number)
                                       return;
                                   dup2(made, number);
                                   mq_close(made);
                               }))
            << number;
        EXPECT_EQ(1, lmsg_isServed(kId)) << number;
    }
}

// Which bears the same name.
TEST_F(Served, AQueueOfAnotherNamespaceIsAnother)
{
    ASSERT_EQ(LMSG_OK, lmsg_tsndMq(kId, "x", 1, 0));
    const int can = seenInChild([] { return unshare(CLONE_NEWIPC) == 0 ? 0 : kCannot; });
    if (can == kCannot)
        GTEST_SKIP() << "no namespace can be had";
    const auto elsewhere = [] {
        for (int file = 3; file < 256; ++file) {
            struct stat status;
            if (fstat(file, &status) == 0 && S_ISREG(status.st_mode))
                close(file); // our own queue is inherited
        }
        if (unshare(CLONE_NEWIPC) == 0)
            mq_open("/vx63.90", O_RDWR | O_CREAT, 0600, nullptr);
    };
    EXPECT_EQ(1, seenWhile([] { return lmsg_isServed(kId); }, elsewhere));
}

int inheritedDescriptors()
{
    int count = 0;
    for (int file = 0; file < 256; ++file)
        count += fcntl(file, F_GETFD) == 0;
    return count;
}

int openDescriptors()
{
    int count = 0;
    for (int file = 0; file < 256; ++file)
        count += fcntl(file, F_GETFD) >= 0;
    return count;
}

TEST_F(Served, NoDescriptorIsLeftOpenOrInherited)
{
    const int inherited = inheritedDescriptors();
    const int open = openDescriptors();
    int most = 0;
    const auto look = [&] {
        hooks::s_onCall = [&](const char*) {
            most = std::max(most, inheritedDescriptors());
            return 0;
        };
        LmsgQueue queue;
        lmsg_lookAt(kId, &queue);
        const int32_t seen = lmsg_isServed(kId);
        hooks::reset();
        return seen;
    };
    EXPECT_EQ(2, seenWhile(look, [] { mq_open("/vx63.90", O_RDWR | O_CREAT, 0600, nullptr); }));
    EXPECT_EQ(1, look());
    EXPECT_EQ(inherited + 2, most) << "the two ends of the pipe";
    EXPECT_EQ(open, openDescriptors());
}

// A program may have closed its standard input.
TEST_F(Served, ADescriptorOfOurOwnMayBe0)
{
    const auto service = [] { mq_open("/vx63.90", O_RDWR | O_CREAT, 0600, nullptr); };
    EXPECT_EQ(2, seenWhile(
                     [] {
                         return seenInChild([] {
                             close(0);
                             LmsgQueue queue;
                             return lmsg_lookAt(kId, &queue) == 0 ? lmsg_isServed(kId) : -1;
                         });
                     },
                     service));
    EXPECT_EQ(2, seenWhile(
                     [] {
                         return seenInChild([] {
                             dup2(STDERR_FILENO, 0);
                             hooks::s_onCall = [](const char* call) {
                                 if (std::string_view(call) == "openat")
                                     close(0);
                                 return 0;
                             };
                             return lmsg_isServed(kId);
                         });
                     },
                     service));
}

TEST_F(Served, StandardInputStaysOpenWhereNothingIsTold)
{
    const mqd_t made = mq_open("/vx63.90", O_RDWR | O_CREAT, 0600, nullptr);
    ASSERT_GE(made, 0);
    ASSERT_EQ(0, fchmod(made, 0602));
    mq_close(made);
    EXPECT_EQ(0, seenInChild([] {
                  dup2(STDERR_FILENO, 0);
                  return lmsg_isServed(kId) == -1 && fcntl(0, F_GETFD) >= 0 ? 0 : 1;
              }));
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

TEST_F(Served, NeverAsksForMemory)
{
    ASSERT_EQ(LMSG_OK, lmsg_tsndMq(kId, "x", 1, 0));
    const int64_t before = vx63test::t_heapCalls;
    EXPECT_EQ(1, lmsg_isServed(kId));
    EXPECT_EQ(0, lmsg_isServed(kOtherId));
    LmsgQueue queue;
    EXPECT_EQ(0, lmsg_lookAt(kId, &queue));
    EXPECT_EQ(before, vx63test::t_heapCalls);
}

#endif

} // namespace

// A log that has grown past its limit is started anew while others log as well: whatever comes between two
// steps of a statement, no line is lost. Libc's functions are stood in for, to let another thread in at those
// places.
#include "libvx63.h"
#include "support/log_file.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <time.h>
#include <unistd.h>
#include <utility>

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;
using vx63test::kLogPath;
using vx63test::logMessages;

// What happens once before this thread's next call.
thread_local std::function<void()> t_beforeOpen;
thread_local std::function<void()> t_beforeTruncation;

// What these calls fail with, unless 0, and how often they were made.
thread_local int t_flockError = 0;
thread_local int t_flocks = 0;
thread_local int t_fstatError = 0;

// Where it is not null, nobody sleeps: it tells how long it would have been.
thread_local int64_t* t_sleptNs = nullptr;

thread_local int t_openFlags = 0;
thread_local mode_t t_openMode = 0;

void happen(std::function<void()>& what)
{
    if (const auto once = std::exchange(what, nullptr)) {
        once();
    }
}

// What it is called on a 32-bit machine with 64-bit times and file sizes.
#if __SIZEOF_POINTER__ == 4
constexpr char kFstat[] = "__fstat64_time64";
#else
constexpr char kFstat[] = "fstat";
#endif

} // namespace

extern "C" {

int open(const char* path, int flags, ...)
{
    happen(t_beforeOpen);
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    t_openFlags = flags;
    t_openMode = mode;
    static const auto real = reinterpret_cast<int (*)(const char*, int, ...)>(dlsym(RTLD_NEXT, "open64"));
    return real(path, flags, mode);
}

int ftruncate(int fd, off_t length) noexcept
{
    happen(t_beforeTruncation);
    static const auto real = reinterpret_cast<int (*)(int, off64_t)>(dlsym(RTLD_NEXT, "ftruncate64"));
    return real(fd, length);
}

int flock(int fd, int operation) noexcept
{
    ++t_flocks;
    if (t_flockError != 0) {
        errno = t_flockError;
        return -1;
    }
    static const auto real = reinterpret_cast<int (*)(int, int)>(dlsym(RTLD_NEXT, "flock"));
    return real(fd, operation);
}

int fstat(int fd, struct stat* status) noexcept
{
    if (t_fstatError != 0) {
        errno = t_fstatError;
        *status = {};
        status->st_size = 2097153;
        return -1;
    }
    static const auto real = reinterpret_cast<int (*)(int, struct stat*)>(dlsym(RTLD_NEXT, kFstat));
    return real(fd, status);
}

#if __SIZEOF_POINTER__ != 4 // where it has another name, the tests sleep
int nanosleep(const timespec* time, timespec* rest)
{
    if (t_sleptNs != nullptr) {
        *t_sleptNs += time->tv_sec * 1'000'000'000 + time->tv_nsec;
        return 0;
    }
    static const auto real =
        reinterpret_cast<int (*)(const timespec*, timespec*)>(dlsym(RTLD_NEXT, "nanosleep"));
    return real(time, rest);
}
#endif

} // extern "C"

// On the meter the platform gives these; here nobody asks.
int32_t lmsg_tsndMq(uint8_t, const void*, uint32_t, uint32_t)
{
    return -1;
}

int32_t lmsg_trcvMq(uint8_t, void*, uint32_t, uint32_t*, uint32_t)
{
    return -1;
}

namespace {

class RotationTest : public testing::Test {
protected:
    void SetUp() override
    {
        vx63test::removeLog();
        std::ofstream(kLogPath) << std::string(2097152, 'x') << '\n';
    }
    void TearDown() override { vx63test::removeLog(); }
};

TEST_F(RotationTest, ALineWrittenBeforeTheFileIsOpenedStays)
{
    t_beforeOpen = [] { std::thread([] { vx63_init(19); }).join(); };
    vx63_init(18);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_init: Start.", "vx63_init: arg error. procId=19",
                                           "vx63_init: End. vx63_err=-2", "vx63_init: Start.",
                                           "vx63_init: arg error. procId=18", "vx63_init: End. vx63_err=-2"));
}

TEST_F(RotationTest, ALineOfWhoFindsTheFileFullMeanwhileStays)
{
    std::future<int32_t> other;
    t_beforeTruncation = [&other] {
        other = std::async(std::launch::async, [] { return vx63_init(19); });
        other.wait_for(std::chrono::milliseconds(50)); // it waits for us; did it not, it would be done
    };
    vx63_init(18);
    other.wait();
    EXPECT_THAT(logMessages(),
                UnorderedElementsAre("vx63_init: Start.", "vx63_init: arg error. procId=19",
                                     "vx63_init: End. vx63_err=-2", "vx63_init: Start.",
                                     "vx63_init: arg error. procId=18", "vx63_init: End. vx63_err=-2"));
}

TEST_F(RotationTest, NoSignalComesBetween)
{
    sigset_t before;
    sigset_t during;
    sigset_t after;
    pthread_sigmask(SIG_SETMASK, nullptr, &before);
    t_beforeTruncation = [&] { pthread_sigmask(SIG_SETMASK, nullptr, &during); };
    vx63_init(18);
    pthread_sigmask(SIG_SETMASK, nullptr, &after);
    for (const int number : {SIGHUP, SIGINT, SIGTERM, SIGUSR1, SIGUSR2, SIGALRM, SIGCHLD, SIGRTMIN}) {
        EXPECT_EQ(sigismember(&before, number), 0) << number;
        EXPECT_EQ(sigismember(&during, number), 1) << number;
        EXPECT_EQ(sigismember(&after, number), 0) << number;
    }
}

// Another has emptied and filled it meanwhile: it may be as long as the limit.
TEST_F(RotationTest, AFileThatIsNoLongerTooLongStays)
{
    t_beforeOpen = [] { ASSERT_EQ(truncate(kLogPath, 2097152), 0); };
    uintmax_t size = 0;
    t_beforeTruncation = [&] { size = std::filesystem::file_size(kLogPath); };
    vx63_init(18);
    EXPECT_GT(size, 2097152u) << "the second line begins anew, the first does not";
}

// How nobody waits for long at the opening, and no command inherits the file.
TEST_F(RotationTest, TheFileIsOpenedToAddToIt)
{
    vx63_init(18);
    EXPECT_EQ(t_openFlags, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK);
    EXPECT_EQ(t_openMode, 0666u);
}

// Where standard input is closed, the log is file 0.
TEST_F(RotationTest, AProgramWithoutInputLogsToo)
{
    const int input = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    vx63_init(18);
    EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), -1) << "left open";
    dup2(input, STDIN_FILENO);
    close(input);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_init: Start.", "vx63_init: arg error. procId=18",
                                           "vx63_init: End. vx63_err=-2"));
}

TEST_F(RotationTest, WhatTheCallerFailedWithDelaysNothing)
{
    t_flocks = 0;
    errno = EWOULDBLOCK;
    vx63_init(18);
    EXPECT_EQ(t_flocks, 2);
}

class FailureTest : public RotationTest {
protected:
    void TearDown() override
    {
        t_flockError = 0;
        t_fstatError = 0;
        RotationTest::TearDown();
    }
};

// Where a file system has no locks, nobody waits for one.
TEST_F(FailureTest, WithoutLocksTheFileIsStartedAnewAtOnce)
{
    t_flockError = ENOLCK;
    t_flocks = 0;
    vx63_init(18);
    EXPECT_EQ(t_flocks, 2); // once to lock, once to unlock
    t_flockError = 0;
    EXPECT_THAT(logMessages(), ElementsAre("vx63_init: Start.", "vx63_init: arg error. procId=18",
                                           "vx63_init: End. vx63_err=-2"));
}

TEST_F(FailureTest, ALockIsWaitedForATenthOfASecond)
{
    int64_t sleptNs = 0;
    t_sleptNs = sizeof(void*) == 4 ? nullptr : &sleptNs;
    t_flockError = EWOULDBLOCK;
    t_flocks = 0;
    t_beforeTruncation = [] { EXPECT_EQ(t_flocks, 101); };
    vx63_init(18);
    t_sleptNs = nullptr;
    EXPECT_FALSE(t_beforeTruncation);
    EXPECT_EQ(sleptNs, sizeof(void*) == 4 ? 0 : 100'000'000);
}

TEST_F(FailureTest, WhoCannotTellTheSizeEmptiesNothing)
{
    t_fstatError = EIO;
    vx63_init(18);
    t_fstatError = 0;
    EXPECT_EQ(vx63test::logLines().size(), 4u);
}

} // namespace

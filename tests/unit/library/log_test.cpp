#include "support/operation_test.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <thread>
#include <time.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::MatchesRegex;
using vx63test::kLogPath;
using vx63test::logLines;
using vx63test::logMessages;
using vx63test::platform;

// vx63_init(18) logs three lines and asks no service.
class LogTest : public testing::Test {
protected:
    void SetUp() override { vx63test::removeLog(); }
    void TearDown() override { vx63test::removeLog(); }

    static void fillLog(size_t size)
    {
        std::ofstream(kLogPath) << std::string(size - 1, 'x') << '\n';
        ASSERT_EQ(fs::file_size(kLogPath), size);
    }
};

TEST_F(LogTest, ALineHasItsSixFields)
{
    timespec before;
    clock_gettime(CLOCK_REALTIME, &before);
    EXPECT_EQ(vx63_init(18), -2);
    timespec after;
    clock_gettime(CLOCK_REALTIME, &after);

    ASSERT_EQ(logLines().size(), 3u);
    const std::string line = logLines()[1];
    EXPECT_THAT(line,
                MatchesRegex("[0-9]+\\.[0-9]{6} : unit_library : libvx63\\.cpp\\([0-9]+\\) vx63_init\\(\\) : "
                             "arg error\\. procId=18"));
    long seconds = 0;
    long microseconds = 0;
    ASSERT_EQ(std::sscanf(line.c_str(), "%ld.%ld", &seconds, &microseconds), 2);
    const int64_t time = int64_t{seconds} * 1000000 + microseconds;
    EXPECT_GE(time, before.tv_sec * 1000000 + before.tv_nsec / 1000);
    EXPECT_LE(time, after.tv_sec * 1000000 + after.tv_nsec / 1000);
    EXPECT_GT(vx63test::logSourceLines()[1], 0);
}

// A routine that several operations share logs in the name of each, but every statement by its own line.
using SharedRoutineTest = vx63test::OperationTest;

void expectStatementsToldApart(size_t first, size_t count)
{
    const std::vector<int> lines = vx63test::logSourceLines();
    ASSERT_GE(lines.size(), first + count);
    const std::set<int> statements(&lines[first], &lines[first] + count);
    EXPECT_EQ(statements.size(), count) << testing::PrintToString(lines);
}

TEST_F(SharedRoutineTest, AReadTellsItsStatementsApart)
{
    MultiMeasResult result;
    EXPECT_EQ(vx63_getScanResult(-1, &result), -2);
    EXPECT_EQ(logMessages().at(2), "vx63_getScanResult: arg error. sIndex=-1");
    expectStatementsToldApart(1, 2);
}

TEST_F(SharedRoutineTest, AStartTellsItsStatementsApart)
{
    platform().expectSend(12, 10000, "05 0C 03 01 28 00 00 00 | 06 00 00 00 01 00 00 00 | 00*32");
    platform().expectReceive(5, 10000, "0C 05 03 81 04 00 00 00 | 02 00 00 00");
    MeasCondition condition = {};
    condition.powerSupply = 9;
    EXPECT_EQ(vx63_startSingleMeas(6, &condition), -2);
    EXPECT_EQ(logMessages().at(4), "vx63_startSingleMeasCommon: parameter error. vx63_err=-2");
    expectStatementsToldApart(1, 3); // the condition, its supply, the display type
}

TEST_F(SharedRoutineTest, ADumpTellsItsStatementsApart)
{
    platform().expectSend(12, 10000, "05 0C 06 01 08 00 00 00 | 00 00 00 00 01 00 00 00");
    platform().expectReceive(5, 10000, "0C 05 06 81 3E 00 00 00 | 00*40 | 09 00 00 00 | 55*18");
    SingleMeasResult result;
    EXPECT_EQ(vx63_getSingleMeasResult(1, &result), 0);
    EXPECT_EQ(logMessages().at(7), "vx63_getSingleMeasResult: 0010 : 55 55");
    expectStatementsToldApart(5, 3);
}

TEST_F(LogTest, AMissingFileIsCreated)
{
    vx63_init(18);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_init: Start.", "vx63_init: arg error. procId=18",
                                           "vx63_init: End. vx63_err=-2"));
    struct stat status;
    ASSERT_EQ(stat(kLogPath, &status), 0);
    const mode_t mask = umask(0);
    umask(mask);
    EXPECT_EQ(status.st_mode & 0777, 0666 & ~mask);
}

TEST_F(LogTest, AFileOfTheLimitIsAppendedTo)
{
    fillLog(2097152);
    vx63_init(18);
    // The first line is appended, which brings the file past the limit: the second starts it anew.
    EXPECT_THAT(logMessages(), ElementsAre("vx63_init: arg error. procId=18", "vx63_init: End. vx63_err=-2"));
    fillLog(2097152 - 600);
    vx63_init(18);
    EXPECT_EQ(logLines().size(), 4u);
}

TEST_F(LogTest, AFileBeyondTheLimitIsStartedAnew)
{
    fillLog(2097153);
    vx63_init(18);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_init: Start.", "vx63_init: arg error. procId=18",
                                           "vx63_init: End. vx63_err=-2"));
}

TEST_F(LogTest, AFileBeyond32BitsIsStartedAnew)
{
    fillLog(1);
    fs::resize_file(kLogPath, 0x1'0000'0001); // sparse
    vx63_init(18);
    EXPECT_EQ(logLines().size(), 3u);
}

// Gives the file of that name a date in 2040.
void dateTo2040(const char* path)
{
    const timespec times[2] = {{.tv_sec = 2211840000, .tv_nsec = 0}, {.tv_sec = 2211840000, .tv_nsec = 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path, times, 0), 0);
}

TEST_F(LogTest, AFileDated2040IsStartedAnewToo)
{
    fillLog(2097153);
    dateTo2040(kLogPath);
    vx63_init(18);
    EXPECT_EQ(logLines().size(), 3u);
}

TEST_F(LogTest, APipeDated2040IsNotOpened)
{
    ASSERT_EQ(mkfifo(kLogPath, 0600), 0);
    dateTo2040(kLogPath);
    EXPECT_EQ(vx63_init(18), -2);
}

TEST_F(LogTest, ALockThatIsNeverGivenBackHoldsUpNobody)
{
    fillLog(2097153);
    const int fd = open(kLogPath, O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(fd, LOCK_EX), 0);
    vx63_init(18);
    close(fd);
    EXPECT_EQ(logLines().size(), 3u);
}

// Whatever a signal interrupts, a log statement too: its handler's lines and all others stay whole.
TEST_F(LogTest, ASignalHandlerLogs)
{
    static std::atomic<int> handled = 0;
    struct sigaction action = {};
    action.sa_handler = [](int) {
        vx63_init(18);
        if (++handled == 100) {
            const itimerval never = {};
            setitimer(ITIMER_REAL, &never, nullptr);
        }
    };
    struct sigaction before;
    ASSERT_EQ(sigaction(SIGALRM, &action, &before), 0);
    const itimerval often = {.it_interval = {0, 200}, .it_value = {0, 200}};
    ASSERT_EQ(setitimer(ITIMER_REAL, &often, nullptr), 0);
    int calls = 0;
    for (; handled < 100; ++calls) {
        vx63_init(19);
    }
    sigaction(SIGALRM, &before, nullptr);

    int handlers = 0;
    int others = 0;
    for (const std::string& message : logMessages()) { // every line has the form of a line
        handlers += message == "vx63_init: arg error. procId=18";
        others += message == "vx63_init: arg error. procId=19";
    }
    EXPECT_EQ(handlers, handled);
    EXPECT_EQ(others, calls);
    EXPECT_EQ(logMessages().size(), 3u * static_cast<size_t>(handlers + others));
}

TEST_F(LogTest, ADirectoryAtThePathIsLeftAlone)
{
    fs::create_directory(kLogPath);
    EXPECT_EQ(vx63_init(18), -2);
    EXPECT_EQ(vx63_init(5), 0);
    EXPECT_TRUE(fs::is_empty(kLogPath));
    EXPECT_NE(fcntl(STDIN_FILENO, F_GETFD), -1); // nothing was opened, and nothing is closed
}

TEST_F(LogTest, APipeAtThePathIsNotOpened)
{
    ASSERT_EQ(mkfifo(kLogPath, 0600), 0);
    EXPECT_EQ(vx63_init(18), -2); // an open for writing would wait for a reader
    EXPECT_TRUE(fs::is_fifo(kLogPath));
}

TEST_F(LogTest, AFileThatCannotBeOpenedChangesNoResult)
{
    fs::create_symlink("/nonexistent/log", kLogPath);
    EXPECT_EQ(vx63_init(18), -2);
    EXPECT_EQ(vx63_init(5), 0);
}

TEST_F(LogTest, AFullDiskChangesNoResult)
{
    fs::create_symlink("/dev/full", kLogPath); // a device: not opened at all
    EXPECT_EQ(vx63_init(18), -2);
}

TEST_F(LogTest, ErrnoIsTheCallers)
{
    fs::create_symlink("/nonexistent/log", kLogPath);
    errno = EDOM;
    vx63_init(18);
    EXPECT_EQ(errno, EDOM);
}

TEST_F(LogTest, TheLevelChangesNothing)
{
    for (const int32_t level : {0, 1, -1, INT32_MAX, INT32_MIN}) {
        vx63test::removeLog();
        g_lLibLogLevel = level;
        vx63_init(18);
        EXPECT_EQ(logLines().size(), 3u) << level;
        EXPECT_EQ(g_lLibLogLevel, level);
    }
    g_lLibLogLevel = 0;
}

TEST_F(LogTest, ThePathIsWrittenBeforeUse)
{
    memset(g_cLibTestLogFilePath, 'x', sizeof g_cLibTestLogFilePath);
    vx63_init(18);
    EXPECT_STREQ(g_cLibTestLogFilePath, "/var/log/libvx63.cpp.txt");
    EXPECT_EQ(std::string(g_cLibTestLogFilePath + 25, 231), std::string(231, 'x'));
    EXPECT_EQ(logLines().size(), 3u);
}

TEST_F(LogTest, ThreadsLoseNoLineAndSeeThePathWhole)
{
    constexpr int kThreads = 8;
    constexpr int kCalls = 200;
    std::atomic<bool> done = false;
    std::thread reader([&done] {
        while (!done) {
            char path[sizeof g_cLibTestLogFilePath];
            memcpy(path, g_cLibTestLogFilePath, sizeof path);
            ASSERT_STREQ(path, "/var/log/libvx63.cpp.txt");
        }
    });
    std::vector<std::thread> writers;
    for (int i = 0; i < kThreads; ++i) {
        writers.emplace_back([] {
            for (int call = 0; call < kCalls; ++call) {
                vx63_init(18);
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    done = true;
    reader.join();

    int starts = 0;
    int errors = 0;
    int ends = 0;
    for (const std::string& message : logMessages()) {
        starts += message == "vx63_init: Start.";
        errors += message == "vx63_init: arg error. procId=18";
        ends += message == "vx63_init: End. vx63_err=-2";
    }
    EXPECT_EQ(starts, kThreads * kCalls);
    EXPECT_EQ(errors, kThreads * kCalls);
    EXPECT_EQ(ends, kThreads * kCalls);
    EXPECT_EQ(logLines().size(), 3u * kThreads * kCalls);
}

} // namespace

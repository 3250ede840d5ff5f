// The key log: a file of its own under the log's rules.
#include "frame/log.h"
#include "libvx63.h"
#include "support/log_file.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using vx63test::kKeyLogPath;
using vx63test::logLines;
using vx63test::logMessages;

class KeyLogTest : public testing::Test {
protected:
    void SetUp() override { vx63test::removeLog(); }
    void TearDown() override { vx63test::removeLog(); }

    static void fillKeyLog(size_t size)
    {
        std::ofstream(kKeyLogPath) << std::string(size - 1, 'x') << '\n';
        ASSERT_EQ(fs::file_size(kKeyLogPath), size);
    }
};

TEST_F(KeyLogTest, ALineHasTheSixFieldsOfTheLog)
{
    vx63::logKeyLine(vx63::Site("vx63_getKeyStatus", 7), "pKeyStat->stat[%d]=%d", 16, -1);
    ASSERT_EQ(logLines(kKeyLogPath).size(), 1u);
    EXPECT_THAT(
        logLines(kKeyLogPath)[0],
        MatchesRegex("[0-9]+\\.[0-9]{6} : unit_inside : libvx63\\.cpp\\(7\\) vx63_getKeyStatus\\(\\) : "
                     "pKeyStat->stat\\[16\\]=-1"));
    EXPECT_FALSE(fs::exists(vx63test::kLogPath));
}

TEST_F(KeyLogTest, EachLogHasItsOwnLines)
{
    vx63::logLine(vx63::Site("f", 1), "main");
    vx63::logKeyLine(vx63::Site("f", 1), "key");
    EXPECT_THAT(logMessages(), ElementsAre("f: main"));
    EXPECT_THAT(logMessages(kKeyLogPath), ElementsAre("f: key"));
}

TEST_F(KeyLogTest, AFileOfTheLimitIsAppendedToAndOneBeyondIsStartedAnew)
{
    fillKeyLog(2097152);
    vx63::logKeyLine(vx63::Site("f", 1), "first");
    EXPECT_EQ(logLines(kKeyLogPath).size(), 2u);
    vx63::logKeyLine(vx63::Site("f", 1), "second");
    EXPECT_THAT(logMessages(kKeyLogPath), ElementsAre("f: second"));

    fillKeyLog(2097153);
    vx63::logKeyLine(vx63::Site("f", 1), "third");
    EXPECT_THAT(logMessages(kKeyLogPath), ElementsAre("f: third"));
}

TEST_F(KeyLogTest, WhatCannotBeWrittenIsLeftOut)
{
    fs::create_directory(kKeyLogPath);
    vx63::logKeyLine(vx63::Site("f", 1), "lost");
    EXPECT_TRUE(fs::is_empty(kKeyLogPath));

    fs::remove(kKeyLogPath);
    fs::create_symlink("/nonexistent/log", kKeyLogPath);
    errno = EDOM;
    vx63::logKeyLine(vx63::Site("f", 1), "lost");
    EXPECT_EQ(errno, EDOM);
}

TEST_F(KeyLogTest, ThePathBufferKeepsNamingTheMainLog)
{
    memset(g_cLibTestLogFilePath, 'x', sizeof g_cLibTestLogFilePath);
    vx63::logKeyLine(vx63::Site("f", 1), "key");
    EXPECT_STREQ(g_cLibTestLogFilePath, "/var/log/libvx63.cpp.txt");
    EXPECT_THAT(logMessages(kKeyLogPath), ElementsAre("f: key"));
    EXPECT_THAT(logMessages(), IsEmpty());
}

// Every conversion that a statement uses, and a text that is not copied.
TEST_F(KeyLogTest, ALineOfAnyLengthIsWhole)
{
    const std::string name(3000, 'n');
    vx63::logKeyLine(vx63::Site("f", 7),
                     "%d|%d|%u|%02X|%04hX|0x%04X|%08X|%06ld|%ld|%lld|%p|%p|%f|[%.*s]|[%.3s]|%s|%s|[%s] end",
                     0, -2147483647 - 1, 4294967295u, 10, 0x1ABCD, 255, 0x12ABCDEF, 7L, -5L,
                     -9223372036854775807LL - 1, nullptr, reinterpret_cast<void*>(0xA0B), -2.25, 3, "abcdef",
                     "ghijkl", "", static_cast<const char*>(nullptr), name.c_str());
    EXPECT_THAT(
        logMessages(kKeyLogPath),
        ElementsAre(
            "f: 0|-2147483648|4294967295|0A|ABCD|0x00FF|12ABCDEF|000007|-5|-9223372036854775808|(nil)|0xa0b|"
            "-2.250000|[abc]|[ghi]||(null)|[" +
            name + "] end"));
}

TEST_F(KeyLogTest, FourteenLargestNumbersFitALine)
{
    const std::string name(3000, 'n');
    const double f = -3.4028234663852886e38;
    vx63::logKeyLine(vx63::Site("f", 7), "%f %f %f %f %f %f %f %f %f %f %f %f %f %f %s", f, f, f, f, f, f, f,
                     f, f, f, f, f, f, f, name.c_str());
    std::string numbers;
    for (int i = 0; i < 14; ++i) {
        numbers += "-340282346638528859811704183484516925440.000000 ";
    }
    EXPECT_THAT(logMessages(kKeyLogPath), ElementsAre("f: " + numbers + name));
}

TEST_F(KeyLogTest, ATextIsWholeCopiedOrNot)
{
    for (size_t length = 0; length < 260; ++length) {
        vx63test::removeLog();
        const std::string name(length, 'n');
        vx63::logKeyLine(vx63::Site("f", 7), "[%s]", name.c_str());
        EXPECT_THAT(logMessages(kKeyLogPath), ElementsAre("f: [" + name + "]"));
    }
}

} // namespace

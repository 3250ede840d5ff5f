// Hex dumps and lines out of all bounds.
#include "frame/log.h"
#include "libvx63.h"
#include "support/log_file.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>

namespace {

using testing::ElementsAre;
using testing::StartsWith;
using vx63test::logLines;
using vx63test::logMessages;

class DumpTest : public testing::Test {
protected:
    void SetUp() override { vx63test::removeLog(); }
};

TEST_F(DumpTest, FortyBytesTakeThreeLines)
{
    uint8_t data[40];
    std::iota(std::begin(data), std::end(data), uint8_t{0xE0});
    vx63::logDump("consta data", data, 40, "vx63_getSingleMeasResult");
    EXPECT_THAT(
        logMessages(),
        ElementsAre("vx63_getSingleMeasResult: consta data:40 byte",
                    "vx63_getSingleMeasResult: 0000 : E0 E1 E2 E3 E4 E5 E6 E7 E8 E9 EA EB EC ED EE EF",
                    "vx63_getSingleMeasResult: 0010 : F0 F1 F2 F3 F4 F5 F6 F7 F8 F9 FA FB FC FD FE FF",
                    "vx63_getSingleMeasResult: 0020 : 00 01 02 03 04 05 06 07"));
    EXPECT_STREQ(gLibDumpLog, "0020 : 00 01 02 03 04 05 06 07");
}

TEST_F(DumpTest, NoBytesLeaveTheTitle)
{
    vx63::logDump("consta data", nullptr, 0, "f");
    EXPECT_THAT(logMessages(), ElementsAre("f: consta data:0 byte"));
}

TEST_F(DumpTest, AFullLineIsTheLast)
{
    const uint8_t data[16] = {};
    vx63::logDump("consta data", data, 16, "f");
    EXPECT_THAT(logMessages(), ElementsAre("f: consta data:16 byte",
                                           "f: 0000 : 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"));
}

// Which stands in the same buffer as the lines.
TEST_F(DumpTest, ALongTitleLeavesNoTrace)
{
    const uint8_t data[16] = {};
    vx63::logDump(std::string(60, 'L').c_str(), data, 16, "f");
    EXPECT_EQ(logMessages().at(1), "f: 0000 : 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST_F(DumpTest, TheLevelIsZeroFromTheStart)
{
    EXPECT_EQ(g_lLibLogLevel, 0);
}

TEST_F(DumpTest, OffsetsGrowPastFourDigits)
{
    const std::vector<uint8_t> data(0x10001, 0xAB);
    vx63::logDump("d", data.data(), 0x10001, "f");
    EXPECT_EQ(logMessages().back(), "f: 10000 : AB");
    EXPECT_EQ(logLines().size(), 1u + 0x1000 + 1);
}

TEST_F(DumpTest, ALabelOutOfAllBoundsStaysInTheBuffer)
{
    const std::string label(60000, 'L');
    vx63::logDump(label.c_str(), nullptr, 0, "f");
    EXPECT_THAT(logMessages(), ElementsAre("f: " + std::string(49999, 'L')));
}

TEST_F(DumpTest, ALineKeepsItsWholeLength)
{
    const int prefix = 64; // about; the lengths lie on both sides of every buffer's end
    for (const size_t length : {0, 1, 4096 - prefix - 8, 4096 - prefix + 8, 4095, 4096, 4097, 1000000}) {
        vx63test::removeLog();
        const std::string name(length, 'n');
        vx63::logLine(vx63::Site("f", 1), "pcMeasFileName=[%s]", name.c_str());
        vx63::logLine(vx63::Site("f", 1), "End.");
        EXPECT_THAT(logMessages(), ElementsAre("f: pcMeasFileName=[" + name + "]", "f: End.")) << length;
    }
    // Every length around the end of the usual buffer.
    for (size_t length = 3900; length < 4200; ++length) {
        vx63test::removeLog();
        const std::string name(length, 'n');
        vx63::logLine(vx63::Site("f", 1), "[%s]", name.c_str());
        ASSERT_THAT(logMessages(), ElementsAre("f: [" + name + "]"));
    }
}

// What a statement's message becomes.
template <class... Arguments>
std::string messageOf(const char* format, Arguments... arguments)
{
    vx63test::removeLog();
    vx63::logLine(vx63::Site("f", 1), format, arguments...);
    return logMessages().at(0).substr(strlen("f: "));
}

TEST_F(DumpTest, NumbersHaveAllTheirDigits)
{
    for (const char* digits :
         {"0",        "9",        "10",        "99",        "100",        "999",       "1000",
          "9999",     "10000",    "99999",     "100000",    "999999",     "1000000",   "9999999",
          "10000000", "99999999", "100000000", "999999999", "1000000000", "4294967295"}) {
        EXPECT_EQ(messageOf("<%u>", static_cast<unsigned>(std::stoul(digits))),
                  "<" + std::string(digits) + ">");
    }
    for (const char* digits : {"4294967296", "5000000001", "999999999999999999", "1000000000000000000",
                               "9223372036854775807", "-9223372036854775808", "-1"}) {
        EXPECT_EQ(messageOf("<%lld>", std::stoll(digits)), "<" + std::string(digits) + ">");
    }
    EXPECT_EQ(messageOf("%012lld", 5000000001LL), "005000000001");
    EXPECT_EQ(messageOf("%02u|%02u|%09u", 5u, 10u, 5u), "05|10|000000005");
    EXPECT_EQ(messageOf("%.9s|%.19s|%.0s", "0123456789", "01234567890123456789", "x"),
              "012345678|0123456789012345678|");
    EXPECT_EQ(messageOf("%p|%p", reinterpret_cast<void*>(5), reinterpret_cast<void*>(0xABC)), "0x5|0xabc");
}

// Texts of up to 200 bytes are copied into a room of 1152, which the head of the line begins; longer ones
// stay where they lie, in at most 12 pieces with what is between them.
TEST_F(DumpTest, LongTextsStandSideBySide)
{
    const std::string a(201, 'a');
    const std::string b(300, 'b');
    vx63::logLine(vx63::Site("f", 1), "%s%s", a.c_str(), b.c_str());
    EXPECT_THAT(logMessages(), ElementsAre("f: " + a + b));
}

TEST_F(DumpTest, MoreLongTextsThanALineHasPiecesForAreLeftOut)
{
    const std::string text(201, 't');
    const char* const t = text.c_str();
    vx63::logLine(vx63::Site("f", 1), "%s %s %s %s %s %s %s", t, t, t, t, t, t, t);
    const std::string five = text + " " + text + " " + text + " " + text + " " + text + " ";
    EXPECT_THAT(logMessages(),
                ElementsAre("f: " + five + text)); // behind the head and what is between, the 12th
}

TEST_F(DumpTest, ATextWithoutRoomStaysWhereItLies)
{
    const std::string text(200, 't');
    const char* const t = text.c_str();
    vx63::logLine(vx63::Site("f", 1), "%s%s%s%s%s%s%s", t, t, t, t, t, t, t);
    EXPECT_THAT(logMessages(), ElementsAre("f: " + text + text + text + text + text + text + text));
}

// What is left of a line of which the rest leaves so much room.
template <class... Arguments>
std::string messageInRoom(size_t room, const char* format, Arguments... arguments)
{
    vx63test::removeLog();
    vx63::logLine(vx63::Site("f", 1), "%s", "");
    const size_t head = logLines().at(0).size();
    const std::string filler(1152 - head - room, '_');
    vx63test::removeLog();
    vx63::logLine(vx63::Site("f", 1), (filler + format).c_str(), arguments...);
    return logMessages().at(0).substr(strlen("f: ") + filler.size());
}

TEST_F(DumpTest, ANumberWithoutRoomIsLeftOut)
{
    EXPECT_EQ(messageInRoom(20, "%u", 4294967295u), "4294967295");
    EXPECT_EQ(messageInRoom(19, "%u", 4294967295u), "");
    EXPECT_EQ(messageInRoom(20, "%X", 0x12ABu), "12AB");
    EXPECT_EQ(messageInRoom(19, "%X", 0x12ABu), "");
    EXPECT_EQ(messageInRoom(20, "%030u", 5u), "00000000000000000005");
    EXPECT_EQ(messageInRoom(20, "%030X", 5u), "00000000000000000005");
    EXPECT_EQ(messageInRoom(9, "%f", -0.5), "");
    EXPECT_EQ(messageInRoom(10, "%f", -0.5), "-0.500000");
    EXPECT_EQ(messageInRoom(3, "abc%u"), "abc");
    EXPECT_EQ(messageInRoom(2, "abc%u"), "ab");
}

TEST_F(DumpTest, AStatementKnowsItsOwnLineAndFunction)
{
    const vx63::Site here;
    EXPECT_STREQ(here.function, "TestBody");
    EXPECT_EQ(here.line, __LINE__ - 2);
}

} // namespace

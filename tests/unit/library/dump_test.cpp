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

TEST_F(DumpTest, AStatementKnowsItsOwnLineAndFunction)
{
    const vx63::Site here;
    EXPECT_STREQ(here.function, "TestBody");
    EXPECT_EQ(here.line, __LINE__ - 2);
}

} // namespace

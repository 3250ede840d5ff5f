#include "support/bytes.h"
#include "support/operation_test.h"
#include "support/start_body.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using vx63test::condition;
using vx63test::conditionLine;
using vx63test::filled;
using vx63test::hex16;
using vx63test::hexByte;
using vx63test::logMessages;
using vx63test::platform;
using vx63test::same;
using vx63test::startRequest;

using DelayProfileTest = vx63test::OperationTest;

// ---- vx63_startDlyPrfMeas ----

constexpr char kAccepted[] = "0C 05 07 81 04 00 00 00 | 00 00 00 00";

TEST_F(DelayProfileTest, StartTakesASupplyOutOfRangeForOff)
{
    for (const int32_t supply : {5, -1, INT32_MIN}) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, startRequest("07 01", "00 00"));
        platform().expectReceive(5, 10000, kAccepted);
        const MeasCondition given = condition(supply);
        EXPECT_EQ(vx63_startDlyPrfMeas(6, &given), 0);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_startDlyPrfMeas: Start.", conditionLine("vx63_startDlyPrfMeas", supply),
                                "vx63_startDlyPrfMeas: arg error. powerSupply=" + std::to_string(supply) +
                                    " -> VX63_POWER_SUPPLY_OFF",
                                "vx63_startDlyPrfMeas: reqData.ucDispType=6",
                                "vx63_startDlyPrfMeas: End. vx63_err=0"));
    }
}

TEST_F(DelayProfileTest, StartRefusesANullPointer)
{
    EXPECT_EQ(vx63_startDlyPrfMeas(6, nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_startDlyPrfMeas: Start.",
                                           "vx63_startDlyPrfMeas: arg error. pCondition=(nil)",
                                           "vx63_startDlyPrfMeas: End. vx63_err=-2"));
}

// ---- vx63_getDlyPrfResult ----

std::string blockRequest(unsigned block)
{
    return "05 0C 08 01 08 00 00 00 | 00 00 00 00 " + hex16(block) + " 00 00";
}

// The byte at a place of the data that a block carries. No two blocks begin alike.
unsigned dataByte(unsigned block, unsigned place)
{
    return block * 50 + place;
}

std::string blockResponse(unsigned block, unsigned status, const std::string& ucRet = "00")
{
    std::string message = "0C 05 08 81 9C 01 00 00 | " + ucRet + " E1 E2 E3 | " + hex16(status) + " | " +
                          hex16(block) + " | E8 E9 EA EB | ";
    for (unsigned place = 0; place < 400; ++place) {
        message += hexByte(dataByte(block, place)) + " ";
    }
    return message;
}

void expectBlock(unsigned block, unsigned status = 2)
{
    platform().expectSend(12, 10000, blockRequest(block));
    platform().expectReceive(5, 10000, blockResponse(block, status));
}

// The record once blocks 0 to count - 1 are in it and 5A is everywhere else.
DlyPrfResult withBlocks(unsigned count, uint16_t stat)
{
    auto result = filled<DlyPrfResult>(0x5A);
    result.stat = stat;
    for (unsigned i = 0; i < 2048 && i < 400 * count; ++i) {
        result.ucDlyPrfData[i] = static_cast<int8_t>(dataByte(i / 400, i % 400));
    }
    return result;
}

TEST_F(DelayProfileTest, ACompleteProfileTakesSixRequests)
{
    for (unsigned block = 0; block < 6; ++block) {
        expectBlock(block);
    }
    struct {
        DlyPrfResult result;
        uint8_t behind[400];
    } room;
    memset(&room, 0x5A, sizeof room);
    EXPECT_EQ(vx63_getDlyPrfResult(&room.result), 0);
    EXPECT_TRUE(same(room.result, withBlocks(6, 2)));
    for (const uint8_t byte : room.behind) {
        EXPECT_EQ(byte, 0x5A); // the last block brings 48 samples, not 400
    }
    EXPECT_EQ(room.result.ucDlyPrfData[1999], static_cast<int8_t>(4 * 50 + 399));
    EXPECT_EQ(room.result.ucDlyPrfData[2000], static_cast<int8_t>(250));
    EXPECT_EQ(room.result.ucDlyPrfData[2047], 41); // 250 + 47 - 256

    std::vector<std::string> expected = {"vx63_getDlyPrfResult: Start."};
    for (unsigned block = 0; block < 6; ++block) {
        const std::string number = std::to_string(block);
        expected.push_back("vx63_getDlyPrfResult: DLYPRF non continue. lBlockCnt(" + number +
                           ") == rspData.usReadBlockNo(" + number + ")");
        if (block < 5) {
            expected.push_back("vx63_getDlyPrfResult: DLYPRF blk" + number + " get.");
        }
    }
    expected.push_back("vx63_getDlyPrfResult: stat=0002");
    for (unsigned i = 0; i < 2048; ++i) {
        expected.push_back("vx63_getDlyPrfResult: pResult->ucDlyPrfData[" + std::to_string(i) +
                           "]=" + std::to_string(static_cast<int8_t>(dataByte(i / 400, i % 400))));
    }
    expected.push_back("vx63_getDlyPrfResult: End. vx63_err=0");
    EXPECT_EQ(expected.size(), 1u + 11 + 1 + 2048 + 1);
    EXPECT_THAT(logMessages(), ElementsAreArray(expected));
}

TEST_F(DelayProfileTest, AProfileStillMeasuredLeavesTheSamples)
{
    expectBlock(0, 1);
    auto result = filled<DlyPrfResult>(0x5A);
    EXPECT_EQ(vx63_getDlyPrfResult(&result), 0);
    EXPECT_TRUE(same(result, withBlocks(0, 1)));
    EXPECT_THAT(
        logMessages(),
        ElementsAre("vx63_getDlyPrfResult: Start.",
                    "vx63_getDlyPrfResult: DLYPRF non continue. lBlockCnt(0) == rspData.usReadBlockNo(0)",
                    "vx63_getDlyPrfResult: DLYPRF status data ing. rspData.usStatus=1",
                    "vx63_getDlyPrfResult: End. vx63_err=0"));
}

TEST_F(DelayProfileTest, AProfileWithoutDataLeavesTheSamples)
{
    for (const unsigned status : {0u, 3u, 258u, 65535u}) {
        vx63test::removeLog();
        expectBlock(0, status);
        auto result = filled<DlyPrfResult>(0x5A);
        EXPECT_EQ(vx63_getDlyPrfResult(&result), 0);
        EXPECT_TRUE(same(result, withBlocks(0, static_cast<uint16_t>(status))));
        EXPECT_THAT(
            logMessages(),
            ElementsAre("vx63_getDlyPrfResult: Start.",
                        "vx63_getDlyPrfResult: DLYPRF non continue. lBlockCnt(0) == rspData.usReadBlockNo(0)",
                        "vx63_getDlyPrfResult: DLYPRF status data none. rspData.usStatus=" +
                            std::to_string(status),
                        "vx63_getDlyPrfResult: End. vx63_err=0"));
    }
}

TEST_F(DelayProfileTest, AnEndPartWayKeepsTheBlocksBeforeIt)
{
    for (const unsigned status : {0u, 1u, 7u}) {
        for (unsigned last = 1; last <= 5; ++last) {
            for (unsigned block = 0; block < last; ++block) {
                expectBlock(block);
            }
            expectBlock(last, status);
            auto result = filled<DlyPrfResult>(0x5A);
            EXPECT_EQ(vx63_getDlyPrfResult(&result), 0);
            EXPECT_TRUE(same(result, withBlocks(last, static_cast<uint16_t>(status)))) << last;
        }
    }
}

TEST_F(DelayProfileTest, EveryCallStartsAtTheFirstBlock)
{
    expectBlock(0);
    expectBlock(1, 1);
    auto result = filled<DlyPrfResult>(0x5A);
    EXPECT_EQ(vx63_getDlyPrfResult(&result), 0);
    expectBlock(0, 1);
    EXPECT_EQ(vx63_getDlyPrfResult(&result), 0);
    EXPECT_EQ(result.stat, 1);
}

TEST_F(DelayProfileTest, AnotherBlockIsAskedForAgain)
{
    expectBlock(0);
    expectBlock(1);
    platform().expectSend(12, 10000, blockRequest(2));
    platform().expectReceive(5, 10000, blockResponse(3, 2));
    platform().expectSend(12, 10000, blockRequest(2));
    platform().expectReceive(5, 10000, blockResponse(258, 1)); // 0102: its status counts for nothing
    expectBlock(2, 1);
    auto result = filled<DlyPrfResult>(0x5A);
    EXPECT_EQ(vx63_getDlyPrfResult(&result), 0);
    EXPECT_TRUE(same(result, withBlocks(2, 1)));
    EXPECT_THAT(
        logMessages(),
        ElementsAre("vx63_getDlyPrfResult: Start.",
                    "vx63_getDlyPrfResult: DLYPRF non continue. lBlockCnt(0) == rspData.usReadBlockNo(0)",
                    "vx63_getDlyPrfResult: DLYPRF blk0 get.",
                    "vx63_getDlyPrfResult: DLYPRF non continue. lBlockCnt(1) == rspData.usReadBlockNo(1)",
                    "vx63_getDlyPrfResult: DLYPRF blk1 get.",
                    "vx63_getDlyPrfResult: DLYPRF continue. lBlockCnt(2) != rspData.usReadBlockNo(3)",
                    "vx63_getDlyPrfResult: DLYPRF continue. lBlockCnt(2) != rspData.usReadBlockNo(258)",
                    "vx63_getDlyPrfResult: DLYPRF non continue. lBlockCnt(2) == rspData.usReadBlockNo(2)",
                    "vx63_getDlyPrfResult: DLYPRF status data ing. rspData.usStatus=1",
                    "vx63_getDlyPrfResult: End. vx63_err=0"));
}

TEST_F(DelayProfileTest, AskingAgainHasNoLimit)
{
    for (int i = 0; i < 1000; ++i) {
        platform().expectSend(12, 10000, blockRequest(0));
        platform().expectReceive(5, 10000, "0C 05 08 81 0C 00 00 00 | 00 00 00 00 02 00 01 00 00 00 00 00");
    }
    expectBlock(0, 1);
    auto result = filled<DlyPrfResult>(0x5A);
    EXPECT_EQ(vx63_getDlyPrfResult(&result), 0);
    EXPECT_TRUE(same(result, withBlocks(0, 1)));
    EXPECT_EQ(logMessages().size(), 1u + 1000 + 3);
}

TEST_F(DelayProfileTest, ABlockCutShortIsZeroWhereItEnds)
{
    expectBlock(0);
    platform().expectSend(12, 10000, blockRequest(1));
    platform().expectReceive(5, 10000, "0C 05 08 81 0E 00 00 00 | 00 00 00 00 02 00 01 00 00 00 00 00 11 22");
    expectBlock(2, 1);
    auto result = filled<DlyPrfResult>(0x5A);
    EXPECT_EQ(vx63_getDlyPrfResult(&result), 0);
    EXPECT_EQ(result.ucDlyPrfData[400], 0x11);
    EXPECT_EQ(result.ucDlyPrfData[401], 0x22);
    for (size_t i = 402; i < 800; ++i) {
        EXPECT_EQ(result.ucDlyPrfData[i], 0) << i;
    }
    EXPECT_EQ(result.ucDlyPrfData[800], 0x5A);
}

TEST_F(DelayProfileTest, ResultRefusesANullPointer)
{
    EXPECT_EQ(vx63_getDlyPrfResult(nullptr), -2);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_getDlyPrfResult: Start.", "vx63_getDlyPrfResult: arg error. pResult=(nil)",
                            "vx63_getDlyPrfResult: End. vx63_err=-2"));
}

TEST_F(DelayProfileTest, AnyBlockJudgesUcRet)
{
    for (unsigned failing = 0; failing < 6; ++failing) {
        for (unsigned ucRet = 0; ucRet < 256; ++ucRet) {
            if (ucRet == 0 || ucRet == 7 || (failing > 0 && ucRet > 8)) {
                continue;
            }
            vx63test::removeLog();
            for (unsigned block = 0; block < failing; ++block) {
                expectBlock(block);
            }
            platform().expectSend(12, 10000, blockRequest(failing));
            platform().expectReceive(5, 10000, blockResponse(failing, 1, hexByte(ucRet)));
            const int32_t expected = ucRet == 2 ? -2 : ucRet == 3 ? -7 : -1;
            const std::string message = ucRet == 2   ? "parameter error. vx63_err=-2"
                                        : ucRet == 3 ? "power supply error. vx63_err=-7"
                                                     : "ret error. vx63_err=-1";
            auto result = filled<DlyPrfResult>(0x5A);
            EXPECT_EQ(vx63_getDlyPrfResult(&result), expected) << ucRet;
            // The blocks before, and the status of the last of them.
            EXPECT_TRUE(same(result, withBlocks(failing, failing == 0 ? 0x5A5A : 2))) << failing;
            const std::vector<std::string> messages = logMessages();
            ASSERT_EQ(messages.size(), 1u + 2 * failing + 2);
            EXPECT_EQ(messages[messages.size() - 2], "vx63_getDlyPrfResult: " + message);
            EXPECT_EQ(messages.back(), "vx63_getDlyPrfResult: End. vx63_err=" + std::to_string(expected));
        }
    }
}

TEST_F(DelayProfileTest, SevenIsASuccessForABlock)
{
    platform().expectSend(12, 10000, blockRequest(0));
    platform().expectReceive(5, 10000, blockResponse(0, 2, "07"));
    platform().expectSend(12, 10000, blockRequest(1));
    platform().expectReceive(5, 10000, blockResponse(1, 1, "07"));
    auto result = filled<DlyPrfResult>(0x5A);
    EXPECT_EQ(vx63_getDlyPrfResult(&result), 0);
    EXPECT_TRUE(same(result, withBlocks(1, 1)));
}

TEST_F(DelayProfileTest, AFailedExchangeKeepsTheBlocksBeforeIt)
{
    expectBlock(0);
    platform().expectSend(12, 10000, blockRequest(1));
    platform().expectReceiveFails(5, 10000, -4);
    auto result = filled<DlyPrfResult>(0x5A);
    EXPECT_EQ(vx63_getDlyPrfResult(&result), -1);
    EXPECT_TRUE(same(result, withBlocks(1, 2)));
    EXPECT_THAT(
        logMessages(),
        ElementsAre("vx63_getDlyPrfResult: Start.",
                    "vx63_getDlyPrfResult: DLYPRF non continue. lBlockCnt(0) == rspData.usReadBlockNo(0)",
                    "vx63_getDlyPrfResult: DLYPRF blk0 get.",
                    "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                    "vx63_getDlyPrfResult: subcpu communication error. vx63_err=-1",
                    "vx63_getDlyPrfResult: End. vx63_err=-1"));
}

} // namespace

#include "support/bytes.h"
#include "support/operation_test.h"
#include "support/start_body.h"

namespace {

using testing::ElementsAre;
using vx63test::condition;
using vx63test::conditionLine;
using vx63test::filled;
using vx63test::hexByte;
using vx63test::logMessages;
using vx63test::platform;
using vx63test::pointerText;
using vx63test::same;
using vx63test::startRequest;

using PriorityTest = vx63test::OperationTest;

constexpr char kAccepted[] = "0C 05 03 81 04 00 00 00 | 00 00 00 00";

// ---- vx63_startMultiChPrioMeas: what vx63_startSingleMeas sends ----

TEST_F(PriorityTest, StartTakesASupplyOutOfRangeForOff)
{
    platform().expectSend(12, 10000, startRequest("03 01", "00 00"));
    platform().expectReceive(5, 10000, kAccepted);
    const MeasCondition given = condition(9);
    EXPECT_EQ(vx63_startMultiChPrioMeas(6, &given), 0);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_startMultiChPrioMeas: Start.",
                            conditionLine("vx63_startSingleMeasCommon", 9),
                            "vx63_startSingleMeasCommon: arg error. powerSupply=9 -> VX63_POWER_SUPPLY_OFF",
                            "vx63_startSingleMeasCommon: reqData.ucDispType=6",
                            "vx63_startMultiChPrioMeas: End. vx63_err=0"));
}

TEST_F(PriorityTest, StartIsRefusedAsASingleMeasurementIs)
{
    EXPECT_EQ(vx63_startMultiChPrioMeas(6, nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_startMultiChPrioMeas: Start.",
                                           "vx63_startSingleMeasCommon: arg error. pCondition=(nil)",
                                           "vx63_startMultiChPrioMeas: End. vx63_err=-2"));
}

// ---- vx63_getMultiChPrioMeas ----

constexpr char kResultRequest[] = "05 0C 04 01 04 00 00 00 | 00 00 00 00";

// A result of 40 bytes with this ucRet, whose every byte tells where it goes.
std::string resultResponse(const std::string& ucRet)
{
    return "0C 05 04 81 28 00 00 00 | " + ucRet +
           " E1 E2 E3 | A4 E5 E6 E7 | 08 A8 0A AA EE EE 0E AE | 10 20 30 40 14 24 34 44 18 28 38 48 1C 2C 3C "
           "4C | 20 A0 A2 A3 | 24 54 64 74";
}

TEST_F(PriorityTest, ResultIsCopiedAndLogged)
{
    for (const char* ucRet : {"00", "07"}) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, kResultRequest);
        platform().expectReceive(5, 10000, resultResponse(ucRet));
        auto result = filled<SingleMeasResult>(0x5A);
        EXPECT_EQ(vx63_getMultiChPrioMeas(&result), 0);

        EXPECT_EQ(result.lock, 0xA4);
        EXPECT_EQ(result.stat, 0xA808);
        EXPECT_EQ(result.mesCond, 0xAA0A);
        EXPECT_EQ(result.bdSys, 0xAE0E);
        EXPECT_EQ(result.LEVEL, 0x40302010u);
        EXPECT_EQ(result.CNR, 0x44342414u);
        EXPECT_EQ(result.BER_TOTAL, 0x48382818u);
        EXPECT_EQ(result.BER_ERR, 0x4C3C2C1Cu);
        EXPECT_EQ(result.TSID, 0xA020);
        EXPECT_EQ(result.GI, 0xA2);
        EXPECT_EQ(result.LAYER, 0xA3);
        EXPECT_EQ(result.MOD, 0x74645424u);
        // What belongs to the caller is as it was.
        const auto before = filled<SingleMeasResult>(0x5A);
        EXPECT_EQ(result.reserved, before.reserved);
        EXPECT_EQ(result.CONS_NUM, before.CONS_NUM);
        EXPECT_EQ(memcmp(result.points, before.points, sizeof result.points), 0);

        // Unlike a channel of a list, TSID and GI are logged in their own places.
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_getMultiChPrioMeas: Start.",
                                "vx63_getMultiChPrioMeas: pResult=" + pointerText(&result),
                                "vx63_getMultiChPrioMeas: lock=A4 stat=A808 mesCond=AA0A bdSys=AE0E "
                                "LEVEL=1076895760 CNR=1144267796 BER_TOTAL=1211639832 BER_ERR=1279011868 "
                                "TSID=A020 GI=162 LAYER=A3 MOD=74645424",
                                "vx63_getMultiChPrioMeas: End. vx63_err=0"));
    }
}

TEST_F(PriorityTest, ResultRefusesANullPointer)
{
    EXPECT_EQ(vx63_getMultiChPrioMeas(nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getMultiChPrioMeas: Start.",
                                           "vx63_getMultiChPrioMeas: arg error. pResult=(nil)",
                                           "vx63_getMultiChPrioMeas: End. vx63_err=-2"));
}

TEST_F(PriorityTest, ResultJudgesUcRetAndLeavesTheRecordOnFailure)
{
    const auto before = filled<SingleMeasResult>(0x5A);
    for (unsigned ucRet = 0; ucRet < 256; ++ucRet) {
        if (ucRet == 0 || ucRet == 7) {
            continue;
        }
        vx63test::removeLog();
        platform().expectSend(12, 10000, kResultRequest);
        platform().expectReceive(5, 10000, resultResponse(hexByte(ucRet)));
        auto result = filled<SingleMeasResult>(0x5A);
        const int32_t expected = ucRet == 2 ? -2 : ucRet == 3 ? -7 : -1;
        const std::string message = ucRet == 2   ? "parameter error. vx63_err=-2"
                                    : ucRet == 3 ? "power supply error. vx63_err=-7"
                                                 : "ret error. vx63_err=-1";
        EXPECT_EQ(vx63_getMultiChPrioMeas(&result), expected) << ucRet;
        EXPECT_TRUE(same(result, before)) << ucRet;
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_getMultiChPrioMeas: Start.",
                                "vx63_getMultiChPrioMeas: pResult=" + pointerText(&result),
                                "vx63_getMultiChPrioMeas: " + message,
                                "vx63_getMultiChPrioMeas: End. vx63_err=" + std::to_string(expected)));
    }
}

TEST_F(PriorityTest, ResultLeavesTheRecordWhenTheExchangeFails)
{
    const auto before = filled<SingleMeasResult>(0x5A);
    auto result = filled<SingleMeasResult>(0x5A);
    platform().expectSend(12, 10000, kResultRequest);
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_getMultiChPrioMeas(&result), -1);
    EXPECT_TRUE(same(result, before));
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getMultiChPrioMeas: Start.",
                                           "vx63_getMultiChPrioMeas: pResult=" + pointerText(&result),
                                           "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                                           "vx63_getMultiChPrioMeas: subcpu communication error. vx63_err=-1",
                                           "vx63_getMultiChPrioMeas: End. vx63_err=-1"));
}

} // namespace

#include "support/bytes.h"
#include "support/operation_test.h"

namespace {

using testing::ElementsAre;
using vx63test::filled;
using vx63test::hexByte;
using vx63test::logMessages;
using vx63test::platform;
using vx63test::pointerText;
using vx63test::same;

using PriorityTest = vx63test::OperationTest;

constexpr char kAccepted[] = "0C 05 03 81 04 00 00 00 | 00 00 00 00";

// ---- vx63_startMultiChPrioMeas: what vx63_startSingleMeas sends ----

MeasCondition condition()
{
    MeasCondition condition = {};
    condition.ulFreq = 557143;     // 00088057
    condition.ulLoFreq = 10678000; // 00A2EEF0
    condition.usBdSys = 0x0102;
    condition.usBand = 0x0304;
    condition.usMod = 0x1400;
    condition.usCondition = 0x00AB;
    memcpy(condition.ucStrChan, "ABCDEFGH", 8);
    condition.ucOutputEnb = 9;
    condition.powerSupply = 9; // not refused
    return condition;
}

constexpr char kStartRequest[] =
    "05 0C 03 01 28 00 00 00 | 06 00 00 00 01 00 00 00 | 57 80 08 00 F0 EE A2 00 02 01 04 03 00 14 AB 00 |"
    "41 42 43 44 45 46 47 48 | 09 00 00 00 00 00 00 00";

TEST_F(PriorityTest, StartSendsTheCondition)
{
    platform().expectSend(12, 10000, kStartRequest);
    platform().expectReceive(5, 10000, kAccepted);
    const MeasCondition given = condition();
    EXPECT_EQ(vx63_startMultiChPrioMeas(6, &given), 0);
    EXPECT_THAT(
        logMessages(),
        ElementsAre("vx63_startMultiChPrioMeas: Start.",
                    "vx63_startSingleMeasCommon: ulFreq=557143, ulLoFreq=10678000, usBdSys=258, usBand=772, "
                    "usMod=0x1400, usCondition=0x00AB, ucStrChan=[ABCDEFGH], ucOutputEnb=9, powerSupply=9",
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
    const MeasCondition given = condition();
    const std::pair<const char*, int32_t> cases[] = {
        {"01", -1}, {"02", -2}, {"03", -1}, {"07", 0}, {"08", -1}};
    for (const auto& [ucRet, result] : cases) {
        platform().expectSend(12, 10000, kStartRequest);
        platform().expectReceive(5, 10000, std::string("0C 05 03 81 04 00 00 00 | ") + ucRet + " 00 00 00");
        EXPECT_EQ(vx63_startMultiChPrioMeas(6, &given), result) << ucRet;
    }
}

// ---- vx63_stopMultiChPrioMeas ----

constexpr char kStopRequest[] = "05 0C 03 01 28 00 00 00 | 06 00*39";

TEST_F(PriorityTest, StopSendsTheDisplayTypeAlone)
{
    platform().expectSend(12, 10000, kStopRequest);
    platform().expectReceive(5, 10000, kAccepted);
    EXPECT_EQ(vx63_stopMultiChPrioMeas(6), 0);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_stopMultiChPrioMeas: Start.",
                                           "vx63_stopMultiChPrioMeas: reqData.ucDispType=6",
                                           "vx63_stopMultiChPrioMeas: End. vx63_err=0"));
}

TEST_F(PriorityTest, StopJudgesUcRet)
{
    for (unsigned ucRet = 1; ucRet < 256; ++ucRet) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, kStopRequest);
        platform().expectReceive(5, 10000, "0C 05 03 81 04 00 00 00 | " + hexByte(ucRet) + " 00 00 00");
        const int32_t expected = ucRet == 7 ? 0 : ucRet == 2 ? -2 : -1;
        EXPECT_EQ(vx63_stopMultiChPrioMeas(6), expected) << ucRet;
        if (ucRet != 7) {
            EXPECT_EQ(logMessages().at(2),
                      std::string("vx63_stopMultiChPrioMeas: ") +
                          (ucRet == 2 ? "parameter error. vx63_err=-2" : "ret error. vx63_err=-1"));
        }
    }
}

TEST_F(PriorityTest, StopNamesTheSubCpuWhenTheExchangeFails)
{
    platform().expectSend(12, 10000, kStopRequest, -4);
    EXPECT_EQ(vx63_stopMultiChPrioMeas(6), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_stopMultiChPrioMeas: Start.",
                            "vx63_stopMultiChPrioMeas: reqData.ucDispType=6",
                            "vx63_sndRcvCommon: lmsg_tsndMq() timeout error. lmsg_err=-4",
                            "vx63_stopMultiChPrioMeas: subcpu communication error. vx63_err=-1",
                            "vx63_stopMultiChPrioMeas: End. vx63_err=-1"));
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

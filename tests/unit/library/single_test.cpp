#include "support/operation_test.h"
#include "support/start_body.h"

#include <cstring>

namespace {

using testing::ElementsAre;
using vx63test::condition;
using vx63test::conditionLine;
using vx63test::logMessages;
using vx63test::platform;
using vx63test::pointerText;
using vx63test::startRequest;

using SingleTest = vx63test::OperationTest;

constexpr char kAccepted[] = "0C 05 03 81 04 00 00 00 | 00 00 00 00";

// ---- vx63_startSingleMeas ----

TEST_F(SingleTest, StartPacksTheConditionAndTheSupply)
{
    const std::string supplies[] = {"00 00", "01 00", "02 00", "01 01", "02 01"};
    for (int32_t supply = 0; supply <= 4; ++supply) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, startRequest("03 01", supplies[supply]));
        platform().expectReceive(5, 10000, kAccepted);
        const MeasCondition given = condition(supply);
        EXPECT_EQ(vx63_startSingleMeas(6, &given), 0);
        EXPECT_THAT(logMessages(), ElementsAre("vx63_startSingleMeas: Start.",
                                               conditionLine("vx63_startSingleMeasCommon", supply),
                                               "vx63_startSingleMeasCommon: reqData.ucDispType=6",
                                               "vx63_startSingleMeas: End. vx63_err=0"));
    }
}

TEST_F(SingleTest, StartTakesASupplyOutOfRangeForOff)
{
    for (const int32_t supply : {5, 9, -1, INT32_MAX, INT32_MIN}) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, startRequest("03 01", "00 00"));
        platform().expectReceive(5, 10000, kAccepted);
        const MeasCondition given = condition(supply);
        EXPECT_EQ(vx63_startSingleMeas(6, &given), 0);
        EXPECT_THAT(logMessages(), ElementsAre("vx63_startSingleMeas: Start.",
                                               conditionLine("vx63_startSingleMeasCommon", supply),
                                               "vx63_startSingleMeasCommon: arg error. powerSupply=" +
                                                   std::to_string(supply) + " -> VX63_POWER_SUPPLY_OFF",
                                               "vx63_startSingleMeasCommon: reqData.ucDispType=6",
                                               "vx63_startSingleMeas: End. vx63_err=0"));
    }
}

TEST_F(SingleTest, StartLogsAShortChannelNameAsItIs)
{
    platform().expectSend(
        12, 10000,
        "05 0C 03 01 28 00 00 00 | 00 00 00 00 01 00 00 00 | 00*16 | 32 37 00 51 00 00 00 00 | 00*8");
    platform().expectReceive(5, 10000, kAccepted);
    MeasCondition given = {};
    memcpy(given.ucStrChan, "27\0Q", 4);
    EXPECT_EQ(vx63_startSingleMeas(0, &given), 0);
    EXPECT_EQ(logMessages().at(1),
              "vx63_startSingleMeasCommon: ulFreq=0, ulLoFreq=0, usBdSys=0, usBand=0, usMod=0x0000, "
              "usCondition=0x0000, ucStrChan=[27], ucOutputEnb=0, powerSupply=0");
}

TEST_F(SingleTest, StartRefusesANullPointer)
{
    EXPECT_EQ(vx63_startSingleMeas(6, nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_startSingleMeas: Start.",
                                           "vx63_startSingleMeasCommon: arg error. pCondition=(nil)",
                                           "vx63_startSingleMeas: End. vx63_err=-2"));
}

// ---- vx63_getSingleMeasResult ----

constexpr char kResultRequest[] = "05 0C 04 01 04 00 00 00 | 00 00 00 00";

// A result with this ucRet, whose every byte tells where it goes.
std::string resultResponse(const std::string& ucRet)
{
    return "0C 05 04 81 2C 00 00 00 | " + ucRet +
           " E1 E2 E3 | A4 E5 E6 E7 | 08 A8 0A AA EE EE 0E AE | 10 20 30 40 14 24 34 44 18 28 38 48 1C 2C 3C "
           "4C |"
           "20 A0 A2 A3 | 24 54 64 74 | F0 F1 F2 F3";
}

SingleMeasResult filled(int byte)
{
    SingleMeasResult result;
    memset(&result, byte, sizeof result);
    return result;
}

TEST_F(SingleTest, ResultIsCopiedAndLogged)
{
    for (const char* ucRet : {"00", "07"}) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, kResultRequest);
        platform().expectReceive(5, 10000, resultResponse(ucRet));
        SingleMeasResult result = filled(0x5A);
        EXPECT_EQ(vx63_getSingleMeasResult(0, &result), 0);

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
        const SingleMeasResult before = filled(0x5A);
        EXPECT_EQ(result.reserved, before.reserved);
        EXPECT_EQ(result.CONS_NUM, before.CONS_NUM);
        EXPECT_EQ(memcmp(result.points, before.points, sizeof result.points), 0);

        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_getSingleMeasResult: Start.",
                                "vx63_getSingleMeasResult: pResult=" + pointerText(&result),
                                std::string("vx63_getSingleMeasResult: rspData.ucRet=") + ucRet[1],
                                "vx63_getSingleMeasResult: lock=A4 stat=A808 mesCond=AA0A bdSys=AE0E "
                                "LEVEL=1076895760 CNR=1144267796 BER_TOTAL=1211639832 BER_ERR=1279011868 "
                                "TSID=A020 GI=162 LAYER=A3 MOD=74645424",
                                "vx63_getSingleMeasResult: End. vx63_err=0"));
    }
}

TEST_F(SingleTest, ResultRefusesANullPointer)
{
    EXPECT_EQ(vx63_getSingleMeasResult(0, nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getSingleMeasResult: Start.",
                                           "vx63_getSingleMeasResult: arg error. pResult=(nil)",
                                           "vx63_getSingleMeasResult: End. vx63_err=-2"));
}

TEST_F(SingleTest, ResultJudgesUcRetAndLeavesTheRecordOnFailure)
{
    const SingleMeasResult before = filled(0x5A);
    for (int ucRet = 0; ucRet < 256; ++ucRet) {
        if (ucRet == 0 || ucRet == 7) {
            continue;
        }
        vx63test::removeLog();
        char hex[4];
        snprintf(hex, sizeof hex, "%02X", static_cast<unsigned>(ucRet));
        platform().expectSend(12, 10000, kResultRequest);
        platform().expectReceive(5, 10000, resultResponse(hex));
        SingleMeasResult result = filled(0x5A);
        const int32_t err = vx63_getSingleMeasResult(0, &result);
        const int32_t expected = ucRet == 2 ? -2 : ucRet == 3 ? -7 : -1;
        const std::string message = ucRet == 2   ? "parameter error. vx63_err=-2"
                                    : ucRet == 3 ? "power supply error. vx63_err=-7"
                                                 : "ret error. vx63_err=-1";
        EXPECT_EQ(err, expected) << ucRet;
        EXPECT_EQ(memcmp(&result, &before, sizeof result), 0) << ucRet;
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_getSingleMeasResult: Start.",
                                "vx63_getSingleMeasResult: pResult=" + pointerText(&result),
                                "vx63_getSingleMeasResult: rspData.ucRet=" + std::to_string(ucRet),
                                "vx63_getSingleMeasResult: " + message,
                                "vx63_getSingleMeasResult: End. vx63_err=" + std::to_string(expected)));
    }
}

TEST_F(SingleTest, ResultLeavesTheRecordWhenTheExchangeFails)
{
    const SingleMeasResult before = filled(0x5A);
    SingleMeasResult result = filled(0x5A);
    platform().expectSend(12, 10000, kResultRequest);
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_getSingleMeasResult(0, &result), -1);
    EXPECT_EQ(memcmp(&result, &before, sizeof result), 0);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_getSingleMeasResult: Start.",
                            "vx63_getSingleMeasResult: pResult=" + pointerText(&result),
                            "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                            "vx63_getSingleMeasResult: subcpu communication error. vx63_err=-1",
                            "vx63_getSingleMeasResult: End. vx63_err=-1"));
}

TEST_F(SingleTest, AShortResultIsZeroWhereItEnds)
{
    platform().expectSend(12, 10000, kResultRequest);
    platform().expectReceive(5, 10000, "0C 05 04 81 06 00 00 00 | 00 00 00 00 01 EE");
    SingleMeasResult result = filled(0x5A);
    EXPECT_EQ(vx63_getSingleMeasResult(0, &result), 0);
    EXPECT_EQ(result.lock, 1);
    EXPECT_EQ(result.LEVEL, 0u);
    EXPECT_EQ(result.MOD, 0u);
}

} // namespace

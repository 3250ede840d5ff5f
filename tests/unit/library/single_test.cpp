#include "support/operation_test.h"

#include <cstring>

namespace {

using testing::ElementsAre;
using vx63test::logMessages;
using vx63test::platform;
using vx63test::pointerText;

using SingleTest = vx63test::OperationTest;

// A condition whose every byte tells where it went.
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
    condition.powerSupply = 0;
    return condition;
}

constexpr char kConditionLine[] =
    "vx63_startSingleMeasCommon: ulFreq=557143, ulLoFreq=10678000, usBdSys=258, usBand=772, usMod=0x1400, "
    "usCondition=0x00AB, ucStrChan=[ABCDEFGH], ucOutputEnb=9, powerSupply=";

// The start request of condition(), with display type 6 and these two bytes of supply.
std::string startRequest(const std::string& supply)
{
    return "05 0C 03 01 28 00 00 00 | 06 00 00 00 01 00 00 00 | 57 80 08 00 F0 EE A2 00 02 01 04 03 00 14 AB "
           "00 |"
           "41 42 43 44 45 46 47 48 | 09 " +
           supply + " 00 00 00 00 00";
}

constexpr char kStopRequest[] = "05 0C 03 01 28 00 00 00 | 06 00*39";
constexpr char kAccepted[] = "0C 05 03 81 04 00 00 00 | 00 00 00 00";

// ---- vx63_startSingleMeas ----

TEST_F(SingleTest, StartPacksTheConditionAndTheSupply)
{
    const std::string supplies[] = {"00 00", "01 00", "02 00", "01 01", "02 01"};
    for (int32_t supply = 0; supply <= 4; ++supply) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, startRequest(supplies[supply]));
        platform().expectReceive(5, 10000, kAccepted);
        MeasCondition given = condition();
        given.powerSupply = supply;
        EXPECT_EQ(vx63_startSingleMeas(6, &given), 0);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_startSingleMeas: Start.", kConditionLine + std::to_string(supply),
                                "vx63_startSingleMeasCommon: reqData.ucDispType=6",
                                "vx63_startSingleMeas: End. vx63_err=0"));
    }
}

TEST_F(SingleTest, StartTakesASupplyOutOfRangeForOff)
{
    for (const int32_t supply : {5, 9, -1, INT32_MAX, INT32_MIN}) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, startRequest("00 00"));
        platform().expectReceive(5, 10000, kAccepted);
        MeasCondition given = condition();
        given.powerSupply = supply;
        EXPECT_EQ(vx63_startSingleMeas(6, &given), 0);
        EXPECT_EQ(given.powerSupply, supply);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_startSingleMeas: Start.", kConditionLine + std::to_string(supply),
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

TEST_F(SingleTest, StartJudgesUcRet)
{
    const MeasCondition given = condition();
    for (int ucRet = 0; ucRet < 256; ++ucRet) {
        vx63test::removeLog();
        char response[64];
        snprintf(response, sizeof response, "0C 05 03 81 04 00 00 00 | %02X 00 00 00",
                 static_cast<unsigned>(ucRet));
        platform().expectSend(12, 10000, startRequest("00 00"));
        platform().expectReceive(5, 10000, response);
        const int32_t result = vx63_startSingleMeas(6, &given);
        if (ucRet == 0 || ucRet == 7) {
            EXPECT_EQ(result, 0) << ucRet;
        } else if (ucRet == 2) {
            EXPECT_EQ(result, -2);
            EXPECT_EQ(logMessages().at(3), "vx63_startSingleMeasCommon: parameter error. vx63_err=-2");
        } else {
            EXPECT_EQ(result, -1) << ucRet; // 3 as well: no power-supply error here
            EXPECT_EQ(logMessages().at(3), "vx63_startSingleMeasCommon: ret error. vx63_err=-1");
        }
    }
}

TEST_F(SingleTest, StartNamesTheSubCpuWhenTheExchangeFails)
{
    platform().expectSend(12, 10000, startRequest("00 00"));
    platform().expectReceiveFails(5, 10000, -4);
    const MeasCondition given = condition();
    EXPECT_EQ(vx63_startSingleMeas(6, &given), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_startSingleMeas: Start.", std::string(kConditionLine) + "0",
                            "vx63_startSingleMeasCommon: reqData.ucDispType=6",
                            "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                            "vx63_startSingleMeasCommon: subcpu communication error. vx63_err=-1",
                            "vx63_startSingleMeas: End. vx63_err=-1"));
}

// ---- vx63_stopSingleMeas ----

TEST_F(SingleTest, StopSendsTheDisplayTypeAlone)
{
    platform().expectSend(12, 10000, kStopRequest);
    platform().expectReceive(5, 10000, kAccepted);
    EXPECT_EQ(vx63_stopSingleMeas(6), 0);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_stopSingleMeas: Start.", "vx63_stopSingleMeas: reqData.ucDispType=6",
                            "vx63_stopSingleMeas: End. vx63_err=0"));
}

TEST_F(SingleTest, StopJudgesUcRet)
{
    const std::pair<const char*, int32_t> cases[] = {{"00", 0},  {"01", -1}, {"02", -2},
                                                     {"03", -1}, {"07", 0},  {"08", -1}};
    for (const auto& [ucRet, result] : cases) {
        platform().expectSend(12, 10000, kStopRequest);
        platform().expectReceive(5, 10000, std::string("0C 05 03 81 04 00 00 00 | ") + ucRet + " 00 00 00");
        EXPECT_EQ(vx63_stopSingleMeas(6), result) << ucRet;
    }
}

TEST_F(SingleTest, StopNamesTheSubCpuWhenTheExchangeFails)
{
    platform().expectSend(12, 10000, kStopRequest, -4);
    EXPECT_EQ(vx63_stopSingleMeas(6), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_stopSingleMeas: Start.", "vx63_stopSingleMeas: reqData.ucDispType=6",
                            "vx63_sndRcvCommon: lmsg_tsndMq() timeout error. lmsg_err=-4",
                            "vx63_stopSingleMeas: subcpu communication error. vx63_err=-1",
                            "vx63_stopSingleMeas: End. vx63_err=-1"));
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

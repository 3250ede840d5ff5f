#include "support/bytes.h"
#include "support/operation_test.h"

namespace {

using testing::ElementsAre;
using vx63test::hexByte;
using vx63test::logMessages;
using vx63test::platform;
using vx63test::pointerText;

using InputTest = vx63test::OperationTest;

// An exchange of process id 5 with the measurement service, answered with ucRet and nothing else.
void expectExchange(const std::string& request, const std::string& responseCommand, int ucRet,
                    uint32_t timeout = 10000)
{
    platform().expectSend(12, timeout, request);
    platform().expectReceive(5, timeout,
                             "0C 05 " + responseCommand + " 04 00 00 00 | " +
                                 hexByte(static_cast<unsigned>(ucRet)) + " 00 00 00");
}

// ---- vx63_setMeasInput ----

TEST_F(InputTest, SetInputSendsTheInputAtOffset4)
{
    expectExchange("05 0C 00 01 08 00 00 00 | 00 00 00 00 00 00 00 00", "00 81", 0);
    EXPECT_EQ(vx63_setMeasInput(0), 0);
    expectExchange("05 0C 00 01 08 00 00 00 | 00 00 00 00 01 00 00 00", "00 81", 7);
    vx63test::removeLog();
    EXPECT_EQ(vx63_setMeasInput(1), 0);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_setMeasInput: Start.", "vx63_setMeasInput: End. vx63_err=0"));
}

TEST_F(InputTest, SetInputRefusesWhatIsNoInput)
{
    for (const int32_t input : {2, -1, 256, INT32_MAX, INT32_MIN}) {
        vx63test::removeLog();
        EXPECT_EQ(vx63_setMeasInput(input), -2);
        EXPECT_THAT(logMessages(), ElementsAre("vx63_setMeasInput: Start.",
                                               "vx63_setMeasInput: arg error. input=" + std::to_string(input),
                                               "vx63_setMeasInput: End. vx63_err=-2"));
    }
}

TEST_F(InputTest, SetInputJudgesUcRet)
{
    for (int ucRet = 0; ucRet < 256; ++ucRet) {
        vx63test::removeLog();
        expectExchange("05 0C 00 01 08 00 00 00 | 00 00 00 00 01 00 00 00", "00 81", ucRet);
        const int32_t result = vx63_setMeasInput(1);
        if (ucRet == 0 || ucRet == 7) {
            EXPECT_EQ(result, 0) << ucRet;
            EXPECT_EQ(logMessages().size(), 2u) << ucRet;
        } else if (ucRet == 2) {
            EXPECT_EQ(result, -2);
            EXPECT_THAT(logMessages(), ElementsAre("vx63_setMeasInput: Start.",
                                                   "vx63_setMeasInput: parameter error. vx63_err=-2",
                                                   "vx63_setMeasInput: End. vx63_err=-2"));
        } else {
            EXPECT_EQ(result, -1) << ucRet;
            EXPECT_THAT(logMessages(),
                        ElementsAre("vx63_setMeasInput: Start.", "vx63_setMeasInput: ret error. vx63_err=-1",
                                    "vx63_setMeasInput: End. vx63_err=-1"))
                << ucRet;
        }
    }
}

TEST_F(InputTest, SetInputNamesTheSubCpuWhenTheExchangeFails)
{
    platform().expectSend(12, 10000, "05 0C 00 01 08 00 00 00 | 00 00 00 00 01 00 00 00", -4);
    EXPECT_EQ(vx63_setMeasInput(1), -1);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_setMeasInput: Start.",
                                           "vx63_sndRcvCommon: lmsg_tsndMq() timeout error. lmsg_err=-4",
                                           "vx63_setMeasInput: subcpu communication error. vx63_err=-1",
                                           "vx63_setMeasInput: End. vx63_err=-1"));
}

// ---- vx63_reqPowerSupply ----

TEST_F(InputTest, RequestPowerSupplySendsTheRawValue)
{
    for (int supply = 0; supply <= 4; ++supply) {
        vx63test::removeLog();
        expectExchange("05 0C 15 00 04 00 00 00 | " + hexByte(static_cast<unsigned>(supply)) + " 00 00 00",
                       "15 80", 0);
        EXPECT_EQ(vx63_reqPowerSupply(supply), 0);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_reqPowerSupply: Start. powerSupply=" + std::to_string(supply),
                                "vx63_reqPowerSupply: End. vx63_err=0"));
    }
}

TEST_F(InputTest, RequestPowerSupplyRefusesWhatIsNoSupply)
{
    for (const int32_t supply : {5, -1, INT32_MAX, INT32_MIN}) {
        vx63test::removeLog();
        EXPECT_EQ(vx63_reqPowerSupply(supply), -2);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_reqPowerSupply: Start. powerSupply=" + std::to_string(supply),
                                "vx63_reqPowerSupply: arg error. powerSupply=" + std::to_string(supply),
                                "vx63_reqPowerSupply: End. vx63_err=-2"));
    }
}

TEST_F(InputTest, RequestPowerSupplyJudgesUcRet)
{
    const std::pair<int, int32_t> cases[] = {{0, 0},  {1, -1}, {2, -2}, {3, -1},
                                             {6, -1}, {7, 0},  {8, -1}, {255, -1}};
    for (const auto& [ucRet, result] : cases) {
        expectExchange("05 0C 15 00 04 00 00 00 | 04 00 00 00", "15 80", ucRet);
        EXPECT_EQ(vx63_reqPowerSupply(4), result) << ucRet;
    }
}

// ---- vx63_getMeasStatus ----

constexpr char kStatusRequest[] = "05 0C 17 00 04 00 00 00 | 00 00 00 00";

TEST_F(InputTest, MeasStatusIsCopiedAndLogged)
{
    for (const char* ucRet : {"00", "07"}) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, kStatusRequest);
        platform().expectReceive(5, 10000,
                                 std::string("0C 05 17 80 0C 00 00 00 | ") + ucRet +
                                     " AA BB CC 78 56 34 12 CD AB EE EE");
        MeasStatus status = {};
        EXPECT_EQ(vx63_getMeasStatus(&status), 0);
        EXPECT_EQ(status.ulMeasStat, 0x12345678u);
        EXPECT_EQ(status.usInputStat, 0xABCDu);
        EXPECT_THAT(logMessages(), ElementsAre("vx63_getMeasStatus: Start.",
                                               "vx63_getMeasStatus: ulMeasStat=12345678, usInputStat=ABCD",
                                               "vx63_getMeasStatus: End. vx63_err=0"));
    }
}

TEST_F(InputTest, MeasStatusRefusesANullPointer)
{
    EXPECT_EQ(vx63_getMeasStatus(nullptr), -2);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_getMeasStatus: Start.", "vx63_getMeasStatus: arg error. pMeasStat=(nil)",
                            "vx63_getMeasStatus: End. vx63_err=-2"));
}

TEST_F(InputTest, MeasStatusLeavesTheRecordOnFailure)
{
    const std::pair<const char*, int32_t> cases[] = {
        {"01", -1}, {"02", -2}, {"03", -1}, {"06", -1}, {"08", -1}};
    for (const auto& [ucRet, result] : cases) {
        platform().expectSend(12, 10000, kStatusRequest);
        platform().expectReceive(5, 10000,
                                 std::string("0C 05 17 80 0C 00 00 00 | ") + ucRet +
                                     " 00 00 00 FF FF FF FF FF FF 00 00");
        MeasStatus status = {.ulMeasStat = 7, .usInputStat = 8};
        EXPECT_EQ(vx63_getMeasStatus(&status), result);
        EXPECT_EQ(status.ulMeasStat, 7u);
        EXPECT_EQ(status.usInputStat, 8u);
    }
    vx63test::removeLog();
    platform().expectSend(12, 10000, kStatusRequest);
    platform().expectReceiveFails(5, 10000, -4);
    MeasStatus status = {.ulMeasStat = 7, .usInputStat = 8};
    EXPECT_EQ(vx63_getMeasStatus(&status), -1);
    EXPECT_EQ(status.ulMeasStat, 7u);
    EXPECT_EQ(status.usInputStat, 8u);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getMeasStatus: Start.",
                                           "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                                           "vx63_getMeasStatus: subcpu communication error. vx63_err=-1",
                                           "vx63_getMeasStatus: End. vx63_err=-1"));
}

// ---- vx63_getPowerSupplyInfo: asks the device service ----

constexpr char kInfoRequest[] = "05 06 22 00 04 00 00 00 | 00 00 00 00";

TEST_F(InputTest, PowerSupplyInfoIsCopiedAndLogged)
{
    platform().expectSend(6, 10000, kInfoRequest);
    platform().expectReceive(5, 10000,
                             "06 05 22 80 10 00 00 00 | 00 00 00 00 02 0F 34 12 40 E2 01 00 15 CD 5B 07");
    PowerSupplyInfo info = {};
    EXPECT_EQ(vx63_getPowerSupplyInfo(&info), 0);
    EXPECT_EQ(info.ucPowerSupply, 2);
    EXPECT_EQ(info.ucVolt, 15);
    EXPECT_EQ(info.usAdVal, 0x1234);
    EXPECT_EQ(info.ulCurrentM, 123456u);
    EXPECT_EQ(info.ulElecPowerM, 123456789u);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_getPowerSupplyInfo: Start.",
                            "vx63_getPowerSupplyInfo: ucPowerSupply=2, ucVolt=15, usAdVal=4660, "
                            "ulCurrentM=123456, ulElecPowerM=123456789",
                            "vx63_getPowerSupplyInfo: End. vx63_err=0"));
}

TEST_F(InputTest, PowerSupplyInfoTakesZeroAloneForSuccess)
{
    for (const char* ucRet : {"01", "02", "03", "07", "FF"}) {
        vx63test::removeLog();
        platform().expectSend(6, 10000, kInfoRequest);
        platform().expectReceive(5, 10000, std::string("06 05 22 80 10 00 00 00 | ") + ucRet + " FF*15");
        PowerSupplyInfo info = {
            .ucPowerSupply = 1, .ucVolt = 2, .usAdVal = 3, .ulCurrentM = 4, .ulElecPowerM = 5};
        EXPECT_EQ(vx63_getPowerSupplyInfo(&info), -1) << ucRet;
        EXPECT_EQ(info.ucPowerSupply, 1);
        EXPECT_EQ(info.ucVolt, 2);
        EXPECT_EQ(info.usAdVal, 3);
        EXPECT_EQ(info.ulCurrentM, 4u);
        EXPECT_EQ(info.ulElecPowerM, 5u);
        EXPECT_THAT(logMessages(), ElementsAre("vx63_getPowerSupplyInfo: Start.",
                                               "vx63_getPowerSupplyInfo: ret error. vx63_err=-1",
                                               "vx63_getPowerSupplyInfo: End. vx63_err=-1"));
    }
}

TEST_F(InputTest, PowerSupplyInfoDoesNotTestItsPointer)
{
    // A null pointer is not refused: the request goes out.
    platform().expectSend(6, 10000, kInfoRequest);
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_getPowerSupplyInfo(nullptr), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_getPowerSupplyInfo: Start.",
                            "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                            "vx63_getPowerSupplyInfo: PROC_ID_PDEV communication error. vx63_err=-1",
                            "vx63_getPowerSupplyInfo: End. vx63_err=-1"));
}

// ---- vx63_setPowerSupplyMultiMeasMixBand ----

TEST_F(InputTest, MixBandSupplyPassesAnyValueOn)
{
    for (const int value : {0, 1, 2, 255}) {
        vx63test::removeLog();
        expectExchange("05 0C 1C 00 04 00 00 00 | " + hexByte(static_cast<unsigned>(value)) + " 00 00 00",
                       "1C 80", 0, 5000);
        EXPECT_EQ(vx63_setPowerSupplyMultiMeasMixBand(static_cast<uint8_t>(value)), 0);
        EXPECT_THAT(logMessages(), ElementsAre("vx63_setPowerSupplyMultiMeasMixBand: Start. ucOnOff=" +
                                                   std::to_string(value),
                                               "vx63_setPowerSupplyMultiMeasMixBand: End. vx63_err=0"));
    }
}

TEST_F(InputTest, MixBandSupplyTakesZeroAloneForSuccess)
{
    for (const int ucRet : {1, 2, 3, 7, 255}) {
        vx63test::removeLog();
        expectExchange("05 0C 1C 00 04 00 00 00 | 01 00 00 00", "1C 80", ucRet, 5000);
        EXPECT_EQ(vx63_setPowerSupplyMultiMeasMixBand(1), -1);
        EXPECT_THAT(logMessages(), ElementsAre("vx63_setPowerSupplyMultiMeasMixBand: Start. ucOnOff=1",
                                               "vx63_setPowerSupplyMultiMeasMixBand: ret error. vx63_err=-1",
                                               "vx63_setPowerSupplyMultiMeasMixBand: End. vx63_err=-1"));
    }
}

TEST_F(InputTest, MixBandSupplyNamesTheMeasurementServiceWhenTheExchangeFails)
{
    platform().expectSend(12, 5000, "05 0C 1C 00 04 00 00 00 | 01 00 00 00", -1);
    EXPECT_EQ(vx63_setPowerSupplyMultiMeasMixBand(1), -1);
    EXPECT_THAT(
        logMessages(),
        ElementsAre("vx63_setPowerSupplyMultiMeasMixBand: Start. ucOnOff=1",
                    "vx63_sndRcvCommon: lmsg_tsndMq() error. lmsg_err=-1",
                    "vx63_setPowerSupplyMultiMeasMixBand: PROC_ID_PMEAS communication error. vx63_err=-1",
                    "vx63_setPowerSupplyMultiMeasMixBand: End. vx63_err=-1"));
}

} // namespace

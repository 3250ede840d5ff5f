// Optical power and DC voltage.
#include "support/bytes.h"
#include "support/operation_test.h"

namespace {

using testing::ElementsAre;
using vx63test::hexByte;
using vx63test::logMessages;
using vx63test::platform;

using OpticalDcTest = vx63test::OperationTest;

TEST_F(OpticalDcTest, OpticalStartPassesAnyOtherWavelengthOn)
{
    const std::pair<uint32_t, const char*> cases[] = {{1, "01 00 00 00"}, {4294967295u, "FF FF FF FF"}};
    for (const auto& [waveLength, sent] : cases) {
        vx63test::removeLog();
        platform().expectSend(12, 10000,
                              std::string("05 0C 0C 01 0C 00 00 00 | 00 00 00 00 01 00 00 00 ") + sent);
        platform().expectReceive(5, 10000, "0C 05 0C 81 04 00 00 00 | 00 00 00 00");
        EXPECT_EQ(vx63_startOptMeas(waveLength), 0);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_startOptMeas: Start.",
                                "vx63_startOptMeas: ulWaveLength=" + std::to_string(waveLength),
                                "vx63_startOptMeas: End. vx63_err=0"));
    }
}

TEST_F(OpticalDcTest, OpticalStartRefusesNoWavelength)
{
    EXPECT_EQ(vx63_startOptMeas(0), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_startOptMeas: Start.", "vx63_startOptMeas: ulWaveLength=0",
                                           "vx63_startOptMeas: arg error. ulWaveLength=0",
                                           "vx63_startOptMeas: End. vx63_err=-2"));
}

// ---- vx63_getOptMeasResult ----

constexpr char kOptRequest[] = "05 0C 0D 01 04 00 00 00 | 00 00 00 00";

TEST_F(OpticalDcTest, OpticalPowerIsCopiedAndLogged)
{
    const struct {
        const char* body;
        int32_t value;
    } cases[] = {{"00 E1 E2 E3 78 56 34 12", 305419896},
                 {"07 E1 E2 E3 2E FB FF FF", -1234},
                 {"00 E1 E2 E3 00 00 00 80", INT32_MIN}};
    for (const auto& [body, value] : cases) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, kOptRequest);
        platform().expectReceive(5, 10000, std::string("0C 05 0D 81 08 00 00 00 | ") + body);
        int32_t optPow = 5;
        EXPECT_EQ(vx63_getOptMeasResult(&optPow), 0);
        EXPECT_EQ(optPow, value);
        EXPECT_THAT(logMessages(), ElementsAre("vx63_getOptMeasResult: Start.",
                                               "vx63_getOptMeasResult: lOptPow=" + std::to_string(value),
                                               "vx63_getOptMeasResult: End. vx63_err=0"));
    }
}

TEST_F(OpticalDcTest, OpticalPowerRefusesANullPointer)
{
    EXPECT_EQ(vx63_getOptMeasResult(nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getOptMeasResult: Start.",
                                           "vx63_getOptMeasResult: arg error. pResult=(nil)",
                                           "vx63_getOptMeasResult: End. vx63_err=-2"));
}

TEST_F(OpticalDcTest, OpticalPowerLeavesTheValueOnFailure)
{
    int32_t optPow = 5;
    for (unsigned ucRet = 1; ucRet < 256; ++ucRet) {
        if (ucRet == 7) {
            continue;
        }
        vx63test::removeLog();
        platform().expectSend(12, 10000, kOptRequest);
        platform().expectReceive(5, 10000,
                                 "0C 05 0D 81 08 00 00 00 | " + hexByte(ucRet) + " 00 00 00 FF FF FF FF");
        EXPECT_EQ(vx63_getOptMeasResult(&optPow), ucRet == 2 ? -2 : -1) << ucRet; // 3 as well
        EXPECT_EQ(optPow, 5);
        EXPECT_EQ(logMessages().at(1),
                  std::string("vx63_getOptMeasResult: ") +
                      (ucRet == 2 ? "parameter error. vx63_err=-2" : "ret error. vx63_err=-1"));
    }
    vx63test::removeLog();
    platform().expectSend(12, 10000, kOptRequest);
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_getOptMeasResult(&optPow), -1);
    EXPECT_EQ(optPow, 5);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getOptMeasResult: Start.",
                                           "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                                           "vx63_getOptMeasResult: subcpu communication error. vx63_err=-1",
                                           "vx63_getOptMeasResult: End. vx63_err=-1"));
}

// ---- vx63_getDcMeasResult ----

constexpr char kDcRequest[] = "05 0C 0F 01 04 00 00 00 | 00 00 00 00";

TEST_F(OpticalDcTest, DcVoltageIsCopiedAndLogged)
{
    const struct {
        const char* body;
        uint32_t value;
    } cases[] = {{"00 E1 E2 E3 78 56 34 12", 305419896u}, {"07 E1 E2 E3 FF FF FF FF", 4294967295u}};
    for (const auto& [body, value] : cases) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, kDcRequest);
        platform().expectReceive(5, 10000, std::string("0C 05 0F 81 08 00 00 00 | ") + body);
        uint32_t dcV = 5;
        EXPECT_EQ(vx63_getDcMeasResult(&dcV), 0);
        EXPECT_EQ(dcV, value);
        EXPECT_THAT(logMessages(), ElementsAre("vx63_getDcMeasResult: Start.",
                                               "vx63_getDcMeasResult: ulDcV=" + std::to_string(value),
                                               "vx63_getDcMeasResult: End. vx63_err=0"));
    }
}

TEST_F(OpticalDcTest, DcVoltageRefusesANullPointer)
{
    EXPECT_EQ(vx63_getDcMeasResult(nullptr), -2);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_getDcMeasResult: Start.", "vx63_getDcMeasResult: arg error. pResult=(nil)",
                            "vx63_getDcMeasResult: End. vx63_err=-2"));
}

TEST_F(OpticalDcTest, DcVoltageLeavesTheValueOnFailure)
{
    uint32_t dcV = 5;
    for (unsigned ucRet = 1; ucRet < 256; ++ucRet) {
        if (ucRet == 7) {
            continue;
        }
        vx63test::removeLog();
        platform().expectSend(12, 10000, kDcRequest);
        platform().expectReceive(5, 10000,
                                 "0C 05 0F 81 08 00 00 00 | " + hexByte(ucRet) + " 00 00 00 FF FF FF FF");
        EXPECT_EQ(vx63_getDcMeasResult(&dcV), ucRet == 2 ? -2 : -1) << ucRet; // 3 as well
        EXPECT_EQ(dcV, 5u);
        EXPECT_EQ(logMessages().at(1),
                  std::string("vx63_getDcMeasResult: ") +
                      (ucRet == 2 ? "parameter error. vx63_err=-2" : "ret error. vx63_err=-1"));
    }
    vx63test::removeLog();
    platform().expectSend(12, 10000, kDcRequest);
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_getDcMeasResult(&dcV), -1);
    EXPECT_EQ(dcV, 5u);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getDcMeasResult: Start.",
                                           "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                                           "vx63_getDcMeasResult: subcpu communication error. vx63_err=-1",
                                           "vx63_getDcMeasResult: End. vx63_err=-1"));
}

} // namespace

#include "support/bytes.h"
#include "support/operation_test.h"

namespace {

using testing::ElementsAre;
using vx63test::hexByte;
using vx63test::logMessages;
using vx63test::platform;

using DevicePowerTest = vx63test::OperationTest;

// An operation as its user and its service see it.
struct Command {
    const char* name;
    int32_t (*call)();
    const char* start; // what it logs first
    uint8_t service;   // whom it asks
    uint32_t timeout;
    const char* code;   // the command, as it lies in a request
    const char* answer; // the command, as it lies in a response
    const char* argument;
    const char* commFailed; // what it logs when the exchange fails
};

std::string request(const Command& command)
{
    return "05 " + hexByte(command.service) + " " + command.code + " 04 00 00 00 | " + command.argument +
           " 00 00 00";
}

std::string response(const Command& command, int ucRet)
{
    return hexByte(command.service) + " 05 " + command.answer + " 04 00 00 00 | " + hexByte(ucRet) +
           " 00 00 00";
}

std::string line(const Command& command, const std::string& message)
{
    return std::string(command.name) + ": " + message;
}

// The members whose ucRet 0 is success and any other an error.
const Command kCommands[] = {
    {"vx63_reboot", [] { return vx63_reboot(); }, "Start.", 0, 10000, "0C 00", "0C 80", "00",
     "PROC_ID_PSYS communication error. vx63_err=-1"},
    {"vx63_shutdown", [] { return vx63_shutdown(); }, "Start.", 0, 10000, "0D 00", "0D 80", "00",
     "PROC_ID_PSYS communication error. vx63_err=-1"},
    {"vx63_standby", [] { return vx63_standby(0); }, "Start. ucMode=0", 0, 10000, "0E 00", "0E 80", "00",
     "PROC_ID_PSYS communication error. vx63_err=-1"},
    {"vx63_standby", [] { return vx63_standby(1); }, "Start. ucMode=1", 12, 10000, "0E 00", "0E 80", "01",
     "PROC_ID_PMEAS communication error. vx63_err=-1"},
    {"vx63_standby", [] { return vx63_standby(255); }, "Start. ucMode=255", 12, 10000, "0E 00", "0E 80", "FF",
     "PROC_ID_PMEAS communication error. vx63_err=-1"},
    {"vx63_wakeup", [] { return vx63_wakeup(0); }, "Start. ucMode=0", 0, 10000, "0F 00", "0F 80", "00",
     "PROC_ID_PSYS communication error. vx63_err=-1"},
    {"vx63_wakeup", [] { return vx63_wakeup(1); }, "Start. ucMode=1", 12, 10000, "0F 00", "0F 80", "01",
     "PROC_ID_PMEAS communication error. vx63_err=-1"},
    {"vx63_wakeup", [] { return vx63_wakeup(255); }, "Start. ucMode=255", 12, 10000, "0F 00", "0F 80", "FF",
     "PROC_ID_PMEAS communication error. vx63_err=-1"},
    // Ask the measurement service, and name the system service.
    {"vx63_force_standby", [] { return vx63_force_standby(); }, "Start.", 12, 10000, "1D 00", "1D 80", "00",
     "PROC_ID_PSYS communication error. vx63_err=-1"},
    {"vx63_force_wakeup", [] { return vx63_force_wakeup(); }, "Start.", 12, 10000, "1E 00", "1E 80", "00",
     "PROC_ID_PSYS communication error. vx63_err=-1"},
    {"vx63_calibration", [] { return vx63_calibration(0); }, "Start. ucMode=0", 12, 5000, "16 00", "16 80",
     "00", "PROC_ID_PMEAS communication error. vx63_err=-1"},
    {"vx63_calibration", [] { return vx63_calibration(255); }, "Start. ucMode=255", 12, 5000, "16 00",
     "16 80", "FF", "PROC_ID_PMEAS communication error. vx63_err=-1"},
    {"vx63_initFactoryDefault", [] { return vx63_initFactoryDefault(); }, "Start.", 0, 5000, "1A 00", "1A 80",
     "00", "PROC_ID_PSYS communication error. vx63_err=-1"},
    {"vx63_setDeveloperMode", [] { return vx63_setDeveloperMode(1); }, "Start. ucOnOff=1", 0, 5000, "1B 00",
     "1B 80", "01", "PROC_ID_PSYS communication error. vx63_err=-1"},
    {"vx63_setDeveloperMode", [] { return vx63_setDeveloperMode(254); }, "Start. ucOnOff=254", 0, 5000,
     "1B 00", "1B 80", "FE", "PROC_ID_PSYS communication error. vx63_err=-1"},
};

TEST_F(DevicePowerTest, ACommandSendsItsArgument)
{
    for (const Command& command : kCommands) {
        vx63test::removeLog();
        platform().expectSend(command.service, command.timeout, request(command));
        platform().expectReceive(5, command.timeout, response(command, 0));
        EXPECT_EQ(command.call(), 0) << command.name;
        EXPECT_THAT(logMessages(),
                    ElementsAre(line(command, command.start), line(command, "End. vx63_err=0")));
    }
}

TEST_F(DevicePowerTest, ACommandTakesZeroAloneForSuccess)
{
    for (const Command& command : kCommands) {
        for (int ucRet = 1; ucRet < 256; ++ucRet) {
            vx63test::removeLog();
            platform().expectSend(command.service, command.timeout, request(command));
            platform().expectReceive(5, command.timeout, response(command, ucRet));
            EXPECT_EQ(command.call(), -1) << command.name << " " << ucRet;
            ASSERT_THAT(logMessages(),
                        ElementsAre(line(command, command.start), line(command, "ret error. vx63_err=-1"),
                                    line(command, "End. vx63_err=-1")))
                << ucRet;
        }
    }
}

TEST_F(DevicePowerTest, ACommandNamesAServiceWhenTheExchangeFails)
{
    for (const Command& command : kCommands) {
        vx63test::removeLog();
        platform().expectSend(command.service, command.timeout, request(command));
        platform().expectReceiveFails(5, command.timeout, -4);
        EXPECT_EQ(command.call(), -1) << command.name;
        EXPECT_THAT(logMessages(),
                    ElementsAre(line(command, command.start),
                                "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                                line(command, command.commFailed), line(command, "End. vx63_err=-1")));
    }
}

TEST_F(DevicePowerTest, AnEmptyAnswerIsZero)
{
    platform().expectSend(0, 10000, "05 00 0C 00 04 00 00 00 | 00 00 00 00");
    platform().expectReceive(5, 10000, "00 05 0C 80 00 00 00 00 | 09 09 09 09");
    EXPECT_EQ(vx63_reboot(), 0);
}

// ---- vx63_getStandbyStat ----

constexpr char kStandbyRequest[] = "05 0C 18 00 04 00 00 00 | 00 00 00 00";

TEST_F(DevicePowerTest, StandbyStatIsStoredAndLogged)
{
    platform().expectSend(12, 10000, kStandbyRequest);
    platform().expectReceive(5, 10000, "0C 05 18 80 08 00 00 00 | 00 EE EE EE FE FF FF FF");
    uint32_t stat = 7;
    EXPECT_EQ(vx63_getStandbyStat(&stat), 0);
    EXPECT_EQ(stat, 4294967294u);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_getStandbyStat: Start.", "vx63_getStandbyStat: ulStandbyStat=4294967294",
                            "vx63_getStandbyStat: End. vx63_err=0"));
}

TEST_F(DevicePowerTest, StandbyStatOfAShortBodyIsZero)
{
    platform().expectSend(12, 10000, kStandbyRequest);
    platform().expectReceive(5, 10000, "0C 05 18 80 04 00 00 00 | 00 00 00 00 FF FF FF FF");
    uint32_t stat = 7;
    EXPECT_EQ(vx63_getStandbyStat(&stat), 0);
    EXPECT_EQ(stat, 0u);
}

TEST_F(DevicePowerTest, StandbyStatRefusesANullPointer)
{
    EXPECT_EQ(vx63_getStandbyStat(nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getStandbyStat: Start.",
                                           "vx63_getStandbyStat: arg error. pStandbyStat=(nil)",
                                           "vx63_getStandbyStat: End. vx63_err=-2"));
}

TEST_F(DevicePowerTest, StandbyStatIsLeftOnFailure)
{
    for (int ucRet = 1; ucRet < 256; ++ucRet) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, kStandbyRequest);
        platform().expectReceive(5, 10000,
                                 "0C 05 18 80 08 00 00 00 | " + hexByte(ucRet) + " 00 00 00 01 00 00 00");
        uint32_t stat = 7;
        const int32_t expected = ucRet == 2 ? -2 : -1;
        EXPECT_EQ(vx63_getStandbyStat(&stat), expected) << ucRet;
        EXPECT_EQ(stat, 7u) << ucRet;
        ASSERT_THAT(logMessages(),
                    ElementsAre("vx63_getStandbyStat: Start.",
                                ucRet == 2 ? "vx63_getStandbyStat: parameter error. vx63_err=-2"
                                           : "vx63_getStandbyStat: ret error. vx63_err=-1",
                                "vx63_getStandbyStat: End. vx63_err=" + std::to_string(expected)))
            << ucRet;
    }
}

TEST_F(DevicePowerTest, StandbyStatNamesTheSubCpuWhenTheExchangeFails)
{
    platform().expectSend(12, 10000, kStandbyRequest);
    platform().expectReceiveFails(5, 10000, -4);
    uint32_t stat = 7;
    EXPECT_EQ(vx63_getStandbyStat(&stat), -1);
    EXPECT_EQ(stat, 7u);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getStandbyStat: Start.",
                                           "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                                           "vx63_getStandbyStat: subcpu communication error. vx63_err=-1",
                                           "vx63_getStandbyStat: End. vx63_err=-1"));
}

// ---- vx63_ntfLowBattStatChg ----

TEST_F(DevicePowerTest, LowBatteryPassesAnyValueOn)
{
    for (const int value : {0, 1, 2, 255}) {
        vx63test::removeLog();
        platform().expectSend(12, 5000, "05 0C 19 00 04 00 00 00 | " + hexByte(value) + " 00 00 00");
        platform().expectReceive(5, 5000, "0C 05 19 80 04 00 00 00 | 00 00 00 00");
        EXPECT_EQ(vx63_ntfLowBattStatChg(static_cast<uint8_t>(value)), 0);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_ntfLowBattStatChg: Start. ucLowBattStat=" + std::to_string(value),
                                "vx63_ntfLowBattStatChg: End. vx63_err=0"));
    }
}

TEST_F(DevicePowerTest, LowBatteryTakesThreeForSuccessAsWell)
{
    for (int ucRet = 0; ucRet < 256; ++ucRet) {
        vx63test::removeLog();
        platform().expectSend(12, 5000, "05 0C 19 00 04 00 00 00 | 01 00 00 00");
        platform().expectReceive(5, 5000, "0C 05 19 80 04 00 00 00 | " + hexByte(ucRet) + " 00 00 00");
        const int32_t result = vx63_ntfLowBattStatChg(1);
        if (ucRet == 0 || ucRet == 3) {
            EXPECT_EQ(result, 0) << ucRet;
            EXPECT_THAT(logMessages(), ElementsAre("vx63_ntfLowBattStatChg: Start. ucLowBattStat=1",
                                                   "vx63_ntfLowBattStatChg: End. vx63_err=0"));
        } else if (ucRet == 2) {
            EXPECT_EQ(result, -2);
            EXPECT_THAT(logMessages(), ElementsAre("vx63_ntfLowBattStatChg: Start. ucLowBattStat=1",
                                                   "vx63_ntfLowBattStatChg: parameter error. vx63_err=-2",
                                                   "vx63_ntfLowBattStatChg: End. vx63_err=-2"));
        } else {
            EXPECT_EQ(result, -1) << ucRet;
            ASSERT_THAT(logMessages(), ElementsAre("vx63_ntfLowBattStatChg: Start. ucLowBattStat=1",
                                                   "vx63_ntfLowBattStatChg: ret error. vx63_err=-1",
                                                   "vx63_ntfLowBattStatChg: End. vx63_err=-1"));
        }
    }
}

TEST_F(DevicePowerTest, LowBatteryNamesTheMeasurementServiceWhenTheExchangeFails)
{
    platform().expectSend(12, 5000, "05 0C 19 00 04 00 00 00 | 01 00 00 00", -1);
    EXPECT_EQ(vx63_ntfLowBattStatChg(1), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_ntfLowBattStatChg: Start. ucLowBattStat=1",
                            "vx63_sndRcvCommon: lmsg_tsndMq() error. lmsg_err=-1",
                            "vx63_ntfLowBattStatChg: PROC_ID_PMEAS communication error. vx63_err=-1",
                            "vx63_ntfLowBattStatChg: End. vx63_err=-1"));
}

} // namespace

#include "support/bytes.h"
#include "support/operation_test.h"

namespace {

using testing::ElementsAre;
using vx63test::hexByte;
using vx63test::logMessages;
using vx63test::platform;

using DeviceBuzzerTest = vx63test::OperationTest;

// What a ucRet becomes: the result, and the line that tells of it.
struct Outcome {
    int32_t result;
    const char* message;
};
constexpr Outcome kRetError = {-1, "ret error. vx63_err=-1"};
constexpr Outcome kParameterError = {-2, "parameter error. vx63_err=-2"};
constexpr Outcome kRepeating = {-6, "buzzer repeating. vx63_err=-6"};
constexpr Outcome kPriorityBusy = {-8, "buzzer priority busy. vx63_err=-8"};

// The largest int32_t and the smallest, and those that a byte would take for 0.
constexpr int32_t kFarOff[] = {-1, 256, -256, INT32_MAX, INT32_MIN};

// ---- vx63_buzzer ----

void expectBuzzer(int buzz, int buzzMode, int ucRet)
{
    platform().expectSend(10, 10000,
                          "05 0A 09 00 04 00 00 00 | " + hexByte(buzz) + " " + hexByte(buzzMode) + " 00 00");
    platform().expectReceive(5, 10000, "0A 05 09 80 04 00 00 00 | " + hexByte(ucRet) + " 00 00 00");
}

TEST_F(DeviceBuzzerTest, BuzzerSendsSoundAndMode)
{
    for (int buzz = 0; buzz <= 4; ++buzz) {
        for (int buzzMode = 0; buzzMode <= 2; ++buzzMode) {
            vx63test::removeLog();
            expectBuzzer(buzz, buzzMode, 0);
            EXPECT_EQ(vx63_buzzer(buzz, buzzMode), 0);
            EXPECT_THAT(logMessages(), ElementsAre("vx63_buzzer: Start.",
                                                   "vx63_buzzer: buzz=" + std::to_string(buzz) +
                                                       " buzzMode=" + std::to_string(buzzMode),
                                                   "vx63_buzzer: End. vx63_err=0"));
        }
    }
}

void expectBuzzerRefused(int32_t buzz, int32_t buzzMode, const std::string& argument)
{
    vx63test::removeLog();
    EXPECT_EQ(vx63_buzzer(buzz, buzzMode), -2) << argument;
    EXPECT_THAT(logMessages(), ElementsAre("vx63_buzzer: Start.", "vx63_buzzer: arg error. " + argument,
                                           "vx63_buzzer: End. vx63_err=-2"));
}

TEST_F(DeviceBuzzerTest, BuzzerRefusesWhatIsOutOfRange)
{
    expectBuzzerRefused(5, 0, "buzz=5");
    expectBuzzerRefused(0, 3, "buzzMode=3");
    for (const int32_t value : kFarOff) {
        expectBuzzerRefused(value, 0, "buzz=" + std::to_string(value));
        expectBuzzerRefused(4, value, "buzzMode=" + std::to_string(value));
    }
    expectBuzzerRefused(5, 3, "buzz=5"); // the sound is checked first
}

TEST_F(DeviceBuzzerTest, BuzzerJudgesUcRet)
{
    for (int ucRet = 1; ucRet < 256; ++ucRet) {
        const Outcome outcome = ucRet == 2   ? kParameterError
                                : ucRet == 3 ? kRepeating
                                : ucRet == 4 ? kPriorityBusy
                                             : kRetError;
        vx63test::removeLog();
        expectBuzzer(4, 2, ucRet);
        EXPECT_EQ(vx63_buzzer(4, 2), outcome.result) << ucRet;
        ASSERT_THAT(logMessages(),
                    ElementsAre("vx63_buzzer: Start.", "vx63_buzzer: buzz=4 buzzMode=2",
                                std::string("vx63_buzzer: ") + outcome.message,
                                "vx63_buzzer: End. vx63_err=" + std::to_string(outcome.result)))
            << ucRet;
    }
}

TEST_F(DeviceBuzzerTest, BuzzerNamesTheBuzzerServiceWhenTheExchangeFails)
{
    platform().expectSend(10, 10000, "05 0A 09 00 04 00 00 00 | 01 02 00 00");
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_buzzer(1, 2), -1);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_buzzer: Start.", "vx63_buzzer: buzz=1 buzzMode=2",
                                           "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                                           "vx63_buzzer: PROC_ID_PBUZ communication error. vx63_err=-1",
                                           "vx63_buzzer: End. vx63_err=-1"));
}

// ---- vx63_forceBuzzerVolume ----

void expectVolume(int buzz, int buzzVol, int ucRet)
{
    platform().expectSend(10, 10000,
                          "05 0A 0A 00 04 00 00 00 | " + hexByte(buzz) + " " + hexByte(buzzVol) + " 00 00");
    platform().expectReceive(5, 10000, "0A 05 0A 80 04 00 00 00 | " + hexByte(ucRet) + " 00 00 00");
}

TEST_F(DeviceBuzzerTest, VolumeSendsSoundAndVolume)
{
    for (int buzz = 0; buzz <= 4; ++buzz) {
        for (int buzzVol = 0; buzzVol <= 3; ++buzzVol) {
            vx63test::removeLog();
            expectVolume(buzz, buzzVol, 0);
            EXPECT_EQ(vx63_forceBuzzerVolume(buzz, buzzVol), 0);
            EXPECT_THAT(logMessages(), ElementsAre("vx63_forceBuzzerVolume: Start.",
                                                   "vx63_forceBuzzerVolume: buzz=" + std::to_string(buzz) +
                                                       " buzzVol=" + std::to_string(buzzVol),
                                                   "vx63_forceBuzzerVolume: End. vx63_err=0"));
        }
    }
}

void expectVolumeRefused(int32_t buzz, int32_t buzzVol, const std::string& argument)
{
    vx63test::removeLog();
    EXPECT_EQ(vx63_forceBuzzerVolume(buzz, buzzVol), -2) << argument;
    EXPECT_THAT(logMessages(), ElementsAre("vx63_forceBuzzerVolume: Start.",
                                           "vx63_forceBuzzerVolume: arg error. " + argument,
                                           "vx63_forceBuzzerVolume: End. vx63_err=-2"));
}

TEST_F(DeviceBuzzerTest, VolumeRefusesWhatIsOutOfRange)
{
    expectVolumeRefused(5, 0, "buzz=5");
    expectVolumeRefused(0, 4, "buzzVol=4");
    for (const int32_t value : kFarOff) {
        expectVolumeRefused(value, 0, "buzz=" + std::to_string(value));
        expectVolumeRefused(4, value, "buzzVol=" + std::to_string(value));
    }
    expectVolumeRefused(5, 4, "buzz=5"); // the sound is checked first
}

TEST_F(DeviceBuzzerTest, VolumeJudgesUcRet)
{
    for (int ucRet = 1; ucRet < 256; ++ucRet) {
        // 4 as well is a plain error here.
        const Outcome outcome = ucRet == 2 ? kParameterError : ucRet == 3 ? kRepeating : kRetError;
        vx63test::removeLog();
        expectVolume(4, 3, ucRet);
        EXPECT_EQ(vx63_forceBuzzerVolume(4, 3), outcome.result) << ucRet;
        ASSERT_THAT(logMessages(),
                    ElementsAre("vx63_forceBuzzerVolume: Start.", "vx63_forceBuzzerVolume: buzz=4 buzzVol=3",
                                std::string("vx63_forceBuzzerVolume: ") + outcome.message,
                                "vx63_forceBuzzerVolume: End. vx63_err=" + std::to_string(outcome.result)))
            << ucRet;
    }
}

TEST_F(DeviceBuzzerTest, VolumeNamesTheBuzzerServiceWhenTheExchangeFails)
{
    platform().expectSend(10, 10000, "05 0A 0A 00 04 00 00 00 | 01 02 00 00", -1);
    EXPECT_EQ(vx63_forceBuzzerVolume(1, 2), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_forceBuzzerVolume: Start.", "vx63_forceBuzzerVolume: buzz=1 buzzVol=2",
                            "vx63_sndRcvCommon: lmsg_tsndMq() error. lmsg_err=-1",
                            "vx63_forceBuzzerVolume: PROC_ID_PBUZ communication error. vx63_err=-1",
                            "vx63_forceBuzzerVolume: End. vx63_err=-1"));
}

// ---- vx63_forceBrightness: asks the system service ----

void expectBrightness(int brightness, int ucRet)
{
    platform().expectSend(0, 10000, "05 00 0B 00 04 00 00 00 | " + hexByte(brightness) + " 00 00 00");
    platform().expectReceive(5, 10000, "00 05 0B 80 04 00 00 00 | " + hexByte(ucRet) + " 00 00 00");
}

TEST_F(DeviceBuzzerTest, BrightnessSendsItsValue)
{
    for (int brightness = 0; brightness <= 2; ++brightness) {
        vx63test::removeLog();
        expectBrightness(brightness, 0);
        EXPECT_EQ(vx63_forceBrightness(brightness), 0);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_forceBrightness: Start.",
                                "vx63_forceBrightness: brightness=" + std::to_string(brightness),
                                "vx63_forceBrightness: End. vx63_err=0"));
    }
}

TEST_F(DeviceBuzzerTest, BrightnessRefusesWhatIsOutOfRange)
{
    for (const int32_t brightness : {3, -1, 256, -256, INT32_MAX, INT32_MIN}) {
        vx63test::removeLog();
        EXPECT_EQ(vx63_forceBrightness(brightness), -2) << brightness;
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_forceBrightness: Start.",
                                "vx63_forceBrightness: arg error. brightness=" + std::to_string(brightness),
                                "vx63_forceBrightness: End. vx63_err=-2"));
    }
}

TEST_F(DeviceBuzzerTest, BrightnessJudgesUcRet)
{
    for (int ucRet = 1; ucRet < 256; ++ucRet) {
        // 3 and 4 as well are plain errors here.
        const Outcome outcome = ucRet == 2 ? kParameterError : kRetError;
        vx63test::removeLog();
        expectBrightness(2, ucRet);
        EXPECT_EQ(vx63_forceBrightness(2), outcome.result) << ucRet;
        ASSERT_THAT(logMessages(),
                    ElementsAre("vx63_forceBrightness: Start.", "vx63_forceBrightness: brightness=2",
                                std::string("vx63_forceBrightness: ") + outcome.message,
                                "vx63_forceBrightness: End. vx63_err=" + std::to_string(outcome.result)))
            << ucRet;
    }
}

TEST_F(DeviceBuzzerTest, BrightnessNamesTheSystemServiceWhenTheExchangeFails)
{
    platform().expectSend(0, 10000, "05 00 0B 00 04 00 00 00 | 01 00 00 00");
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_forceBrightness(1), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_forceBrightness: Start.", "vx63_forceBrightness: brightness=1",
                            "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                            "vx63_forceBrightness: PROC_ID_PSYS communication error. vx63_err=-1",
                            "vx63_forceBrightness: End. vx63_err=-1"));
}

} // namespace

#include "support/bytes.h"
#include "support/operation_test.h"

namespace {

using testing::ElementsAre;
using vx63test::hexByte;
using vx63test::logMessages;
using vx63test::platform;

using DeviceUpdateTest = vx63test::OperationTest;

constexpr uint8_t kUpdate[32] = {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16,
                                 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 0,  255};
constexpr char kRequest[] =
    "05 00 10 00 20 00 00 00 | 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 14 15 16 17 18 19 1A "
    "1B 1C 1D 1E 00 FF";

void expectExchange(int ucRet)
{
    platform().expectSend(0, 600000, kRequest);
    platform().expectReceive(5, 600000, "00 05 10 80 04 00 00 00 | " + hexByte(ucRet) + " 00 00 00");
}

TEST_F(DeviceUpdateTest, AnUpdateThatHasFinishedIsASuccess)
{
    expectExchange(3);
    EXPECT_EQ(vx63_prgUpdate(kUpdate), 0);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_prgUpdate: Start.", "vx63_prgUpdate: End. vx63_err=0"));
}

TEST_F(DeviceUpdateTest, AnUpdateThatIsRunningIsAskedForAgain)
{
    for (int i = 0; i < 1000; ++i) {
        expectExchange(0);
    }
    expectExchange(3);
    EXPECT_EQ(vx63_prgUpdate(kUpdate), 0);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_prgUpdate: Start.", "vx63_prgUpdate: End. vx63_err=0"));
}

TEST_F(DeviceUpdateTest, AnEmptyAnswerIsAnUpdateThatIsRunning)
{
    platform().expectSend(0, 600000, kRequest);
    platform().expectReceive(5, 600000, "00 05 10 80 00 00 00 00 | 03");
    expectExchange(3);
    EXPECT_EQ(vx63_prgUpdate(kUpdate), 0);
}

TEST_F(DeviceUpdateTest, AnyOtherUcRetEndsTheUpdate)
{
    for (int ucRet = 1; ucRet < 256; ++ucRet) {
        if (ucRet == 3) {
            continue;
        }
        vx63test::removeLog();
        expectExchange(0);
        expectExchange(ucRet);
        EXPECT_EQ(vx63_prgUpdate(kUpdate), -1) << ucRet;
        ASSERT_THAT(logMessages(), ElementsAre("vx63_prgUpdate: Start.",
                                               "vx63_prgUpdate: ret error. vx63_err=-1 rspData.ucRet=" +
                                                   std::to_string(ucRet),
                                               "vx63_prgUpdate: End. vx63_err=-1"));
    }
}

TEST_F(DeviceUpdateTest, AnExchangeThatFailsEndsTheUpdate)
{
    platform().expectSend(0, 600000, kRequest, -4);
    EXPECT_EQ(vx63_prgUpdate(kUpdate), -1);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_prgUpdate: Start.",
                                           "vx63_sndRcvCommon: lmsg_tsndMq() timeout error. lmsg_err=-4",
                                           "vx63_prgUpdate: PROC_ID_PSYS communication error. vx63_err=-1",
                                           "vx63_prgUpdate: End. vx63_err=-1"));

    vx63test::removeLog();
    expectExchange(0);
    expectExchange(0);
    platform().expectSend(0, 600000, kRequest);
    platform().expectReceiveFails(5, 600000, -4);
    EXPECT_EQ(vx63_prgUpdate(kUpdate), -1);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_prgUpdate: Start.",
                                           "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                                           "vx63_prgUpdate: PROC_ID_PSYS communication error. vx63_err=-1",
                                           "vx63_prgUpdate: End. vx63_err=-1"));
}

TEST_F(DeviceUpdateTest, ANullRequestIsRefused)
{
    EXPECT_EQ(vx63_prgUpdate(nullptr), -2);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_prgUpdate: Start.", "vx63_prgUpdate: arg error. pUpdateReq=(nil)",
                            "vx63_prgUpdate: End. vx63_err=-2"));
}

} // namespace

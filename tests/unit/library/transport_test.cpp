// The exchange, told on vx63_reqPowerSupply: process id 5 asks the measurement service, command 0x0015.
#include "support/operation_test.h"

#include <pthread.h>
#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::MatchesRegex;
using vx63test::logMessages;
using vx63test::platform;

constexpr char kRequest[] = "05 0C 15 00 04 00 00 00 | 03 00 00 00";
constexpr uint32_t kTimeout = 10000;

using TransportTest = vx63test::OperationTest;

// The operation failed in its exchange, which logged these lines.
template <class... Lines>
auto failedWith(const Lines&... lines)
{
    return ElementsAre("vx63_reqPowerSupply: Start. powerSupply=3", lines...,
                       "vx63_reqPowerSupply: PROC_ID_PMEAS communication error. vx63_err=-1",
                       "vx63_reqPowerSupply: End. vx63_err=-1");
}

std::string idLine()
{
    return "vx63_sndRcvCommon: s_procId=5 getpid()=" + std::to_string(getpid()) +
           " pthread_self()=" + std::to_string(static_cast<long>(pthread_self()));
}

TEST_F(TransportTest, AnAcceptedResponseIsTheAnswer)
{
    platform().expectSend(12, kTimeout, kRequest);
    platform().expectReceive(5, kTimeout, "0C 05 15 80 04 00 00 00 | 00 00 00 00");
    EXPECT_EQ(vx63_reqPowerSupply(3), 0);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_reqPowerSupply: Start. powerSupply=3",
                                           "vx63_reqPowerSupply: End. vx63_err=0"));
}

TEST_F(TransportTest, ASendThatTimesOutWaitsForNothing)
{
    platform().expectSend(12, kTimeout, kRequest, -4);
    EXPECT_EQ(vx63_reqPowerSupply(3), -1);
    EXPECT_THAT(logMessages(), failedWith("vx63_sndRcvCommon: lmsg_tsndMq() timeout error. lmsg_err=-4"));
}

TEST_F(TransportTest, ASendThatFailsWaitsForNothing)
{
    for (const int32_t result : {-1, -2, -3, -5, 1}) {
        vx63test::removeLog();
        platform().expectSend(12, kTimeout, kRequest, result);
        EXPECT_EQ(vx63_reqPowerSupply(3), -1);
        EXPECT_THAT(logMessages(),
                    failedWith("vx63_sndRcvCommon: lmsg_tsndMq() error. lmsg_err=" + std::to_string(result)));
    }
}

TEST_F(TransportTest, SilenceTimesOut)
{
    platform().expectSend(12, kTimeout, kRequest);
    platform().expectReceiveFails(5, kTimeout, -4);
    EXPECT_EQ(vx63_reqPowerSupply(3), -1);
    EXPECT_THAT(logMessages(), failedWith("vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4"));
}

TEST_F(TransportTest, AReceiveThatFailsNamesTheOwnId)
{
    for (const int32_t result : {-1, -3, -6, 2}) {
        vx63test::removeLog();
        platform().expectSend(12, kTimeout, kRequest);
        platform().expectReceiveFails(5, kTimeout, result);
        EXPECT_EQ(vx63_reqPowerSupply(3), -1);
        EXPECT_THAT(logMessages(), failedWith("vx63_sndRcvCommon: lmsgrcvMq() error. lmsg_err=" +
                                              std::to_string(result) + " ucSrcId=5"));
    }
}

TEST_F(TransportTest, ARefusalOfTheTransportIsAnError)
{
    platform().expectSend(12, kTimeout, kRequest);
    platform().expectReceive(5, kTimeout, "0C 05 15 80 04 00 0A 00 | 00 00 00 00");
    EXPECT_EQ(vx63_reqPowerSupply(3), -1);
    EXPECT_THAT(logMessages(), failedWith("vx63_sndRcvCommon: ret error. usOptOrRet=000A"));
}

TEST_F(TransportTest, ALateResponseToSomethingElseEndsTheCall)
{
    platform().expectSend(12, kTimeout, kRequest);
    platform().expectReceive(5, kTimeout, "06 09 22 80 04 00 00 00 | 00 00 00 00");
    EXPECT_EQ(vx63_reqPowerSupply(3), -1);
    EXPECT_THAT(
        logMessages(),
        failedWith("vx63_sndRcvCommon: cmd error. usCmd(Req)=0015, usCmd(Rsp)=8022", idLine(),
                   MatchesRegex("vx63_sndRcvCommon: lmsg_tsndMq\\(pSndMsg->head.ucDstId=12, "
                                "pSndMsg->head.ucSrcId=5\\), pSndMsg=0x[0-9a-f]+, lmsg_trcvMq\\(ucSrcId=5, "
                                "pRcvMsg->head.ucSrcId=6, pRcvMsg->head.ucDstId=9\\), pRcvMsg=0x[0-9a-f]+")));

    // The next call works.
    platform().expectSend(12, kTimeout, kRequest);
    platform().expectReceive(5, kTimeout, "0C 05 15 80 04 00 00 00 | 00 00 00 00");
    EXPECT_EQ(vx63_reqPowerSupply(3), 0);
}

// 0x0003 comes from process 9 to process 5, and is refused: ids swapped, bit 15 set, no body, 4.
constexpr char kStrayRequest[] = "09 05 03 00 02 00 00 00 | 01 02";
constexpr char kRefusal[] = "05 09 03 80 00 00 04 00";
constexpr char kStrayLine[] =
    "vx63_sndRcvCommon: lmsg_tsndMq(pSndMsg->head.ucDstId=12, pSndMsg->head.ucSrcId=5), "
    "lmsg_trcvMq(ucSrcId=5, pRcvMsg->head.ucSrcId=9, pRcvMsg->head.ucDstId=5)";

TEST_F(TransportTest, ARequestInPlaceOfTheResponseIsRefused)
{
    platform().expectSend(12, kTimeout, kRequest);
    platform().expectReceive(5, kTimeout, kStrayRequest);
    platform().expectSend(9, kTimeout, kRefusal);
    EXPECT_EQ(vx63_reqPowerSupply(3), -1);
    EXPECT_THAT(logMessages(), failedWith("vx63_sndRcvCommon: cmd error. usCmd(Req)=0015, usCmd(Rsp)=0003",
                                          idLine(), kStrayLine));
}

TEST_F(TransportTest, ARefusalThatCannotBeSentIsLogged)
{
    for (const int32_t result : {-4, -1}) {
        vx63test::removeLog();
        platform().expectSend(12, kTimeout, kRequest);
        platform().expectReceive(5, kTimeout, kStrayRequest);
        platform().expectSend(9, kTimeout, kRefusal, result);
        EXPECT_EQ(vx63_reqPowerSupply(3), -1);
        EXPECT_THAT(logMessages(),
                    failedWith("vx63_sndRcvCommon: cmd error. usCmd(Req)=0015, usCmd(Rsp)=0003", idLine(),
                               kStrayLine,
                               "vx63_sndRcvCommon: lmsg_tsndMq() error. lmsg_err=" + std::to_string(result)));
    }
}

TEST_F(TransportTest, TheOwnRequestComingBackIsARequest)
{
    platform().expectSend(12, kTimeout, kRequest);
    platform().expectReceive(5, kTimeout, kRequest);
    platform().expectSend(5, kTimeout, "0C 05 15 80 00 00 04 00");
    EXPECT_EQ(vx63_reqPowerSupply(3), -1);
}

TEST_F(TransportTest, AMessageShorterThanAHeaderIsARequestOfProcess0)
{
    platform().expectSend(12, kTimeout, kRequest);
    platform().expectReceive(5, kTimeout, "00 05");
    platform().expectSend(0, kTimeout, "05 00 00 80 00 00 04 00");
    EXPECT_EQ(vx63_reqPowerSupply(3), -1);
}

TEST_F(TransportTest, TheTimeoutOfTheCallIsUsedForEverySend)
{
    platform().expectSend(12, 5000, "05 0C 1C 00 04 00 00 00 | 01 00 00 00");
    platform().expectReceive(5, 5000, kStrayRequest);
    platform().expectSend(9, 5000, kRefusal);
    EXPECT_EQ(vx63_setPowerSupplyMultiMeasMixBand(1), -1);
}

// ---- what a body carries, told on the measurement status, command 0x0017 ----

constexpr char kStatusRequest[] = "05 0C 17 00 04 00 00 00 | 00 00 00 00";

TEST_F(TransportTest, AnEmptyBodyIsZero)
{
    platform().expectSend(12, kTimeout, kStatusRequest);
    platform().expectReceive(5, kTimeout, "0C 05 17 80 00 00 00 00");
    MeasStatus status = {.ulMeasStat = 0x11111111, .usInputStat = 0x2222};
    EXPECT_EQ(vx63_getMeasStatus(&status), 0);
    EXPECT_EQ(status.ulMeasStat, 0u);
    EXPECT_EQ(status.usInputStat, 0u);
}

TEST_F(TransportTest, NothingOfAnEarlierMessageShowsInALaterAnswer)
{
    MeasStatus status = {};
    platform().expectSend(12, kTimeout, kStatusRequest);
    platform().expectReceive(5, kTimeout, "0C 05 17 80 0C 05 00 00 | 00 00 00 00 FF FF FF FF FF FF FF*1284");
    EXPECT_EQ(vx63_getMeasStatus(&status), 0);
    EXPECT_EQ(status.ulMeasStat, 0xFFFFFFFFu);

    // Says less than there was.
    platform().expectSend(12, kTimeout, kStatusRequest);
    platform().expectReceive(5, kTimeout, "0C 05 17 80 06 00 00 00 | 00 00 00 00 34 12");
    EXPECT_EQ(vx63_getMeasStatus(&status), 0);
    EXPECT_EQ(status.ulMeasStat, 0x1234u);
    EXPECT_EQ(status.usInputStat, 0u);

    // Says more than it carries.
    platform().expectSend(12, kTimeout, kStatusRequest);
    platform().expectReceive(5, kTimeout, "0C 05 17 80 0C 00 00 00 | 00 00 00 00 78 56");
    EXPECT_EQ(vx63_getMeasStatus(&status), 0);
    EXPECT_EQ(status.ulMeasStat, 0x5678u);
    EXPECT_EQ(status.usInputStat, 0u);
}

TEST_F(TransportTest, ALengthBeyondAMessageIsCut)
{
    for (const char* length : {"0D 05", "FF 7F", "FF FF"}) {
        platform().expectSend(12, kTimeout, kStatusRequest);
        platform().expectReceive(5, kTimeout,
                                 std::string("0C 05 17 80 ") + length +
                                     " 00 00 | 00 00 00 00 01 00 00 00 02 00 EE*1282");
        MeasStatus status = {};
        EXPECT_EQ(vx63_getMeasStatus(&status), 0);
        EXPECT_EQ(status.ulMeasStat, 1u);
        EXPECT_EQ(status.usInputStat, 2u);
    }
}

} // namespace

#include "support/set_file_test.h"

namespace {

using testing::ElementsAre;
using vx63test::logMessages;
using vx63test::platform;

using NoticeTest = vx63test::SetFileTest;

// An exchange of process id 5 with the system service, answered with ucRet.
void expectExchange(const std::string& request, const std::string& responseCommand, const std::string& ucRet)
{
    platform().expectSend(0, 10000, request);
    platform().expectReceive(5, 10000, "00 05 " + responseCommand + " 04 00 00 00 | " + ucRet + " 00 00 00");
}

// ---- vx63_ntfUpdateFile ----

constexpr char kFile49[] = "05 00 12 00 04 00 00 00 | 31 00 00 00";

TEST_F(NoticeTest, AFileIsNamedByItsId)
{
    expectExchange("05 00 12 00 04 00 00 00 | 00 00 00 00", "12 80", "00");
    EXPECT_EQ(vx63_ntfUpdateFile(0), 0);
    vx63test::removeLog();
    expectExchange(kFile49, "12 80", "00");
    EXPECT_EQ(vx63_ntfUpdateFile(49), 0);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_ntfUpdateFile: Start.fileId=49", "vx63_ntfUpdateFile: End. vx63_err=0"));
}

TEST_F(NoticeTest, AFileThatIsNoneIsRefused)
{
    EXPECT_EQ(vx63_ntfUpdateFile(50), -2);
    EXPECT_EQ(vx63_ntfUpdateFile(UINT32_MAX), -2);
    EXPECT_THAT(
        logMessages(),
        ElementsAre("vx63_ntfUpdateFile: Start.fileId=50", "vx63_ntfUpdateFile: arg error. fileId=50",
                    "vx63_ntfUpdateFile: End. vx63_err=-2", "vx63_ntfUpdateFile: Start.fileId=4294967295",
                    "vx63_ntfUpdateFile: arg error. fileId=-1", "vx63_ntfUpdateFile: End. vx63_err=-2"));
}

TEST_F(NoticeTest, TheServiceJudgesAFile)
{
    expectExchange(kFile49, "12 80", "02");
    EXPECT_EQ(vx63_ntfUpdateFile(49), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_ntfUpdateFile: Start.fileId=49",
                                           "vx63_ntfUpdateFile: parameter error. vx63_err=-2",
                                           "vx63_ntfUpdateFile: End. vx63_err=-2"));
    for (const char* ucRet : {"01", "03", "06", "07", "08", "FF"}) {
        vx63test::removeLog();
        expectExchange(kFile49, "12 80", ucRet);
        EXPECT_EQ(vx63_ntfUpdateFile(49), -1) << ucRet;
        EXPECT_THAT(logMessages(), ElementsAre("vx63_ntfUpdateFile: Start.fileId=49",
                                               "vx63_ntfUpdateFile: ret error. vx63_err=-1",
                                               "vx63_ntfUpdateFile: End. vx63_err=-1"))
            << ucRet;
    }
}

TEST_F(NoticeTest, AFailedExchangeAboutAFileIsLogged)
{
    platform().expectSend(0, 10000, kFile49, -4);
    EXPECT_EQ(vx63_ntfUpdateFile(49), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_ntfUpdateFile: Start.fileId=49",
                            "vx63_sndRcvCommon: lmsg_tsndMq() timeout error. lmsg_err=-4",
                            "vx63_ntfUpdateFile: PROC_ID_PSYS communication error. vx63_err=-1",
                            "vx63_ntfUpdateFile: End. vx63_err=-1"));
}

// ---- vx63_ntfUpdateFileIdx ----

constexpr char kRecord44[] = "05 00 13 00 08 00 00 00 | 21 00 00 00 | 2C 00 00 00";

TEST_F(NoticeTest, ARecordIsNamedByTheLow8BitsOfItsIndex)
{
    const std::pair<uint32_t, const char*> cases[] = {
        {0, "00"}, {1, "01"}, {255, "FF"}, {256, "00"}, {300, "2C"}, {1000, "E8"}, {UINT32_MAX, "FF"}};
    for (const auto& [index, sent] : cases) {
        vx63test::removeLog();
        expectExchange(std::string("05 00 13 00 08 00 00 00 | 21 00 00 00 | ") + sent + " 00 00 00", "13 80",
                       "00");
        EXPECT_EQ(vx63_ntfUpdateFileIdx(33, index), 0) << index;
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_ntfUpdateFileIdx: Start. fileId=33, ulIdx=" + std::to_string(index),
                                "vx63_ntfUpdateFileIdx: End. vx63_err=0"));
    }
}

TEST_F(NoticeTest, ARecordOfAFileThatIsNoneIsRefused)
{
    EXPECT_EQ(vx63_ntfUpdateFileIdx(50, 7), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_ntfUpdateFileIdx: Start. fileId=50, ulIdx=7",
                                           "vx63_ntfUpdateFileIdx: arg error. fileId=50",
                                           "vx63_ntfUpdateFileIdx: End. vx63_err=-2"));
}

TEST_F(NoticeTest, TheServiceJudgesARecord)
{
    expectExchange(kRecord44, "13 80", "02");
    EXPECT_EQ(vx63_ntfUpdateFileIdx(33, 44), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_ntfUpdateFileIdx: Start. fileId=33, ulIdx=44",
                                           "vx63_ntfUpdateFileIdx: parameter error. vx63_err=-2",
                                           "vx63_ntfUpdateFileIdx: End. vx63_err=-2"));
    vx63test::removeLog();
    expectExchange(kRecord44, "13 80", "07");
    EXPECT_EQ(vx63_ntfUpdateFileIdx(33, 44), -1);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_ntfUpdateFileIdx: Start. fileId=33, ulIdx=44",
                                           "vx63_ntfUpdateFileIdx: ret error. vx63_err=-1",
                                           "vx63_ntfUpdateFileIdx: End. vx63_err=-1"));
}

TEST_F(NoticeTest, AFailedExchangeAboutARecordIsLogged)
{
    platform().expectSend(0, 10000, kRecord44);
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_ntfUpdateFileIdx(33, 44), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_ntfUpdateFileIdx: Start. fileId=33, ulIdx=44",
                            "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                            "vx63_ntfUpdateFileIdx: PROC_ID_PSYS communication error. vx63_err=-1",
                            "vx63_ntfUpdateFileIdx: End. vx63_err=-1"));
}

} // namespace

#include "support/bytes.h"
#include "support/operation_test.h"

namespace {

using testing::ElementsAre;
using vx63test::filled;
using vx63test::hex16;
using vx63test::hexByte;
using vx63test::logMessages;
using vx63test::platform;
using vx63test::pointerText;
using vx63test::same;

using ConstellationTest = vx63test::OperationTest;

constexpr char kAccepted[] = "0C 05 05 81 04 00 00 00 | 00 00 00 00";

// ---- vx63_startConstaMeas ----

TEST_F(ConstellationTest, StartSendsTheNumberOfPoints)
{
    const std::pair<int32_t, const char*> cases[] = {{1000, "E8 03"}, {2000, "D0 07"}, {4000, "A0 0F"}};
    for (const auto& [collectNum, sent] : cases) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, std::string("05 0C 05 01 08 00 00 00 | 06 00 00 00 01 00 ") + sent);
        platform().expectReceive(5, 10000, kAccepted);
        EXPECT_EQ(vx63_startConstaMeas(6, collectNum), 0);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_startConstaMeas: Start.", "vx63_startConstaMeas: reqData.ucDispType=6",
                                "vx63_startConstaMeas: collectNum=" + std::to_string(collectNum),
                                "vx63_startConstaMeas: End. vx63_err=0"));
    }
}

TEST_F(ConstellationTest, StartRefusesAnyOtherNumber)
{
    // 66536 is 1000 in its low 16 bits.
    for (const int32_t collectNum :
         {3000, 0, 999, 1001, 1999, 2001, 3999, 4001, -1000, 66536, INT32_MAX, INT32_MIN}) {
        vx63test::removeLog();
        EXPECT_EQ(vx63_startConstaMeas(6, collectNum), -2);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_startConstaMeas: Start.",
                                "vx63_startConstaMeas: arg error. collectNum=" + std::to_string(collectNum),
                                "vx63_startConstaMeas: End. vx63_err=-2"));
    }
}

// ---- vx63_getSingleMeasResult with a read count ----

constexpr char kReadRequest[] = "05 0C 06 01 08 00 00 00 | 00 00 00 00 01 00 00 00";

// A response of dataLen body bytes: values whose every byte tells where it goes, then the points.
std::string readResponse(unsigned dataLen, unsigned consNum, const std::string& points,
                         const std::string& ucRet = "00")
{
    return "0C 05 06 81 " + hex16(dataLen) + " 00 00 | " + ucRet +
           " E1 E2 E3 | A4 E5 E6 E7 | 08 A8 0A AA EE EE 0E AE | 10 20 30 40 14 24 34 44 18 28 38 48 1C 2C 3C "
           "4C | 20 A0 A2 A3 | 24 54 64 74 | " +
           hex16(consNum) + " EE EE | " + points;
}

constexpr char kValues[] = "vx63_getSingleMeasResult: lock=A4 stat=A808 mesCond=AA0A bdSys=AE0E "
                           "LEVEL=1076895760 CNR=1144267796 BER_TOTAL=1211639832 BER_ERR=1279011868 "
                           "TSID=A020 GI=162 LAYER=A3 MOD=74645424 CONS_NUM=";

// Answers a read with a message; what the record held before is 5A in every byte.
SingleMeasResult readAnswered(const std::string& message)
{
    platform().expectSend(12, 10000, kReadRequest);
    platform().expectReceive(5, 10000, message);
    auto result = filled<SingleMeasResult>(0x5A);
    EXPECT_EQ(vx63_getSingleMeasResult(1, &result), 0);
    return result;
}

// The point bytes of a record from a point on, this many points.
std::vector<int> pointBytes(const SingleMeasResult& result, size_t first, size_t count)
{
    std::vector<int> values;
    for (size_t i = first; i < first + count; ++i) {
        values.push_back(result.points[i].I);
        values.push_back(result.points[i].Q);
    }
    return values;
}

TEST_F(ConstellationTest, ReadCopiesAndLogsValuesAndPoints)
{
    for (const char* ucRet : {"00", "07"}) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, "05 0C 06 01 08 00 00 00 | 00 00 00 00 34 12 00 00");
        platform().expectReceive(
            5, 10000, readResponse(62, 9, "01 FF 02 FE 7F 80 03 FD 04 FC 05 FB 06 FA 07 F9 08 F8", ucRet));
        auto result = filled<SingleMeasResult>(0x5A);
        EXPECT_EQ(vx63_getSingleMeasResult(0x1234, &result), 0);

        EXPECT_EQ(result.lock, 0xA4);
        EXPECT_EQ(result.stat, 0xA808);
        EXPECT_EQ(result.mesCond, 0xAA0A);
        EXPECT_EQ(result.reserved, 0x5A5A);
        EXPECT_EQ(result.bdSys, 0xAE0E);
        EXPECT_EQ(result.LEVEL, 0x40302010u);
        EXPECT_EQ(result.CNR, 0x44342414u);
        EXPECT_EQ(result.BER_TOTAL, 0x48382818u);
        EXPECT_EQ(result.BER_ERR, 0x4C3C2C1Cu);
        EXPECT_EQ(result.TSID, 0xA020);
        EXPECT_EQ(result.GI, 0xA2);
        EXPECT_EQ(result.LAYER, 0xA3);
        EXPECT_EQ(result.MOD, 0x74645424u);
        EXPECT_EQ(result.CONS_NUM, 9);
        EXPECT_THAT(pointBytes(result, 0, 9),
                    ElementsAre(1, -1, 2, -2, 127, -128, 3, -3, 4, -4, 5, -5, 6, -6, 7, -7, 8, -8));
        // The points behind them stay.
        EXPECT_EQ(pointBytes(result, 9, 3991), std::vector<int>(7982, 0x5A));

        EXPECT_THAT(
            logMessages(),
            ElementsAre("vx63_getSingleMeasResult: Start.",
                        "vx63_getSingleMeasResult: pResult=" + pointerText(&result),
                        "vx63_getSingleMeasResult: usReadCount=4660",
                        std::string("vx63_getSingleMeasResult: s_rspDataConsta.ucRet=") + ucRet[1],
                        std::string(kValues) + "9", "vx63_getSingleMeasResult: consta data:18 byte",
                        "vx63_getSingleMeasResult: 0000 : 01 FF 02 FE 7F 80 03 FD 04 FC 05 FB 06 FA 07 F9",
                        "vx63_getSingleMeasResult: 0010 : 08 F8",
                        "vx63_getSingleMeasResult: End. vx63_err=0"));
    }
}

TEST_F(ConstellationTest, AnyReadCountButZeroAsksForPoints)
{
    const std::pair<uint16_t, const char*> cases[] = {{1, "01 00"}, {255, "FF 00"}, {65535, "FF FF"}};
    for (const auto& [readCount, sent] : cases) {
        vx63test::removeLog();
        platform().expectSend(12, 10000,
                              std::string("05 0C 06 01 08 00 00 00 | 00 00 00 00 ") + sent + " 00 00");
        platform().expectReceive(5, 10000, readResponse(44, 0, ""));
        SingleMeasResult result;
        EXPECT_EQ(vx63_getSingleMeasResult(readCount, &result), 0);
        EXPECT_EQ(logMessages().at(2), "vx63_getSingleMeasResult: usReadCount=" + std::to_string(readCount));
    }
}

TEST_F(ConstellationTest, NoPointsLeaveTheRecordsPoints)
{
    const SingleMeasResult result = readAnswered(readResponse(44, 0, ""));
    EXPECT_EQ(result.MOD, 0x74645424u);
    EXPECT_EQ(result.CONS_NUM, 0);
    EXPECT_EQ(pointBytes(result, 0, 4000), std::vector<int>(8000, 0x5A));
    const std::vector<std::string> messages = logMessages();
    ASSERT_EQ(messages.size(), 7u);
    EXPECT_EQ(messages[4], std::string(kValues) + "0");
    EXPECT_EQ(messages[5], "vx63_getSingleMeasResult: consta data:0 byte");
    EXPECT_EQ(messages[6], "vx63_getSingleMeasResult: End. vx63_err=0");
}

TEST_F(ConstellationTest, AWholeMessageBrings624Points)
{
    // Each point other than the one before it.
    std::string points;
    std::vector<int> expected;
    for (unsigned i = 0; i < 624; ++i) {
        points += hexByte(i) + " " + hexByte(i / 256 + 100) + " ";
        expected.push_back(static_cast<int8_t>(i));
        expected.push_back(static_cast<int8_t>(i / 256 + 100));
    }
    const SingleMeasResult result = readAnswered(readResponse(1292, 624, points));
    EXPECT_EQ(result.CONS_NUM, 624);
    EXPECT_EQ(pointBytes(result, 0, 624), expected);
    EXPECT_EQ(pointBytes(result, 624, 3376), std::vector<int>(6752, 0x5A));
    const std::vector<std::string> messages = logMessages();
    ASSERT_EQ(messages.size(), 5u + 1 + 78 + 1);
    EXPECT_EQ(messages[5], "vx63_getSingleMeasResult: consta data:1248 byte");
    EXPECT_EQ(messages[83],
              "vx63_getSingleMeasResult: 04D0 : 68 66 69 66 6A 66 6B 66 6C 66 6D 66 6E 66 6F 66");
}

TEST_F(ConstellationTest, PointsThatTheMessageHasNoRoomForAreZero)
{
    const struct {
        unsigned consNum;
        size_t points; // that the record holds
    } cases[] = {{625, 625}, {1000, 1000}, {4000, 4000}, {4001, 4000}, {32768, 4000}, {65535, 4000}};
    for (const auto& [consNum, points] : cases) {
        vx63test::removeLog();
        const SingleMeasResult result = readAnswered(readResponse(1292, consNum, "C3*1248"));
        EXPECT_EQ(result.CONS_NUM, consNum);
        EXPECT_EQ(pointBytes(result, 0, 624), std::vector<int>(1248, int8_t(0xC3))) << consNum;
        EXPECT_EQ(pointBytes(result, 624, points - 624), std::vector<int>((points - 624) * 2, 0)) << consNum;
        EXPECT_EQ(pointBytes(result, points, 4000 - points), std::vector<int>((4000 - points) * 2, 0x5A))
            << consNum;
        // The two bytes of padding at the record's end: not one point too many.
        const auto* const bytes = reinterpret_cast<const uint8_t*>(&result);
        EXPECT_EQ(bytes[8038], 0x5A) << consNum;
        EXPECT_EQ(bytes[8039], 0x5A) << consNum;

        const std::vector<std::string> messages = logMessages();
        const size_t dumpLines = (points * 2 + 15) / 16;
        ASSERT_EQ(messages.size(), 6 + dumpLines + 1) << consNum;
        EXPECT_EQ(messages[4], kValues + std::to_string(consNum));
        EXPECT_EQ(messages[5],
                  "vx63_getSingleMeasResult: consta data:" + std::to_string(points * 2) + " byte");
        EXPECT_EQ(messages[6],
                  "vx63_getSingleMeasResult: 0000 : C3 C3 C3 C3 C3 C3 C3 C3 C3 C3 C3 C3 C3 C3 C3 C3");
        if (points == 4000) {
            EXPECT_EQ(messages[505],
                      "vx63_getSingleMeasResult: 1F30 : 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
        }
    }
}

TEST_F(ConstellationTest, PointsThatTheResponseDoesNotCarryAreZeroNeverThoseBefore)
{
    readAnswered(readResponse(1292, 624, "C3*1248"));
    // Two points and a half, of five.
    const SingleMeasResult result = readAnswered(readResponse(49, 5, "01 02 03 04 05"));
    EXPECT_EQ(result.CONS_NUM, 5);
    EXPECT_THAT(pointBytes(result, 0, 6), ElementsAre(1, 2, 3, 4, 5, 0, 0, 0, 0, 0, 0x5A, 0x5A));

    // What the message claims and does not bring.
    const SingleMeasResult cut = readAnswered(readResponse(1292, 5, "01 02 03"));
    EXPECT_THAT(pointBytes(cut, 0, 6), ElementsAre(1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0x5A, 0x5A));

    // A response cut before its count.
    readAnswered(readResponse(1292, 624, "C3*1248"));
    const SingleMeasResult headless = readAnswered("0C 05 06 81 06 00 00 00 | 00 00 00 00 01 EE");
    EXPECT_EQ(headless.lock, 1);
    EXPECT_EQ(headless.MOD, 0u);
    EXPECT_EQ(headless.CONS_NUM, 0);
    EXPECT_EQ(pointBytes(headless, 0, 4000), std::vector<int>(8000, 0x5A));

    // Nothing at all: a ucRet of 0.
    const SingleMeasResult empty = readAnswered("0C 05 06 81 00 00 00 00");
    EXPECT_EQ(empty.lock, 0);
    EXPECT_EQ(empty.CONS_NUM, 0);
}

TEST_F(ConstellationTest, ALengthOutOfAllBoundsIsCut)
{
    for (const unsigned dataLen : {1293u, 8044u, 65535u}) {
        const SingleMeasResult result = readAnswered(readResponse(dataLen, 4000, "C3*1248"));
        EXPECT_EQ(pointBytes(result, 0, 624), std::vector<int>(1248, int8_t(0xC3))) << dataLen;
        EXPECT_EQ(pointBytes(result, 624, 3376), std::vector<int>(6752, 0)) << dataLen;
    }
}

TEST_F(ConstellationTest, ReadRefusesANullPointer)
{
    EXPECT_EQ(vx63_getSingleMeasResult(1, nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getSingleMeasResult: Start.",
                                           "vx63_getSingleMeasResult: arg error. pResult=(nil)",
                                           "vx63_getSingleMeasResult: End. vx63_err=-2"));
}

TEST_F(ConstellationTest, ReadJudgesUcRetAndLeavesTheRecordOnFailure)
{
    const auto before = filled<SingleMeasResult>(0x5A);
    for (unsigned ucRet = 0; ucRet < 256; ++ucRet) {
        if (ucRet == 0 || ucRet == 7) {
            continue;
        }
        vx63test::removeLog();
        platform().expectSend(12, 10000, kReadRequest);
        platform().expectReceive(5, 10000, readResponse(46, 1, "C3 C3", hexByte(ucRet)));
        auto result = filled<SingleMeasResult>(0x5A);
        const int32_t err = vx63_getSingleMeasResult(1, &result);
        const int32_t expected = ucRet == 2 ? -2 : ucRet == 3 ? -7 : -1;
        const std::string message = ucRet == 2   ? "parameter error. vx63_err=-2"
                                    : ucRet == 3 ? "power supply error. vx63_err=-7"
                                                 : "ret error. vx63_err=-1";
        EXPECT_EQ(err, expected) << ucRet;
        EXPECT_TRUE(same(result, before)) << ucRet;
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_getSingleMeasResult: Start.",
                                "vx63_getSingleMeasResult: pResult=" + pointerText(&result),
                                "vx63_getSingleMeasResult: usReadCount=1",
                                "vx63_getSingleMeasResult: s_rspDataConsta.ucRet=" + std::to_string(ucRet),
                                "vx63_getSingleMeasResult: " + message,
                                "vx63_getSingleMeasResult: End. vx63_err=" + std::to_string(expected)));
    }
}

TEST_F(ConstellationTest, ReadLeavesTheRecordWhenTheExchangeFails)
{
    const auto before = filled<SingleMeasResult>(0x5A);
    auto result = filled<SingleMeasResult>(0x5A);
    platform().expectSend(12, 10000, kReadRequest);
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_getSingleMeasResult(1, &result), -1);
    EXPECT_TRUE(same(result, before));
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_getSingleMeasResult: Start.",
                            "vx63_getSingleMeasResult: pResult=" + pointerText(&result),
                            "vx63_getSingleMeasResult: usReadCount=1",
                            "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                            "vx63_getSingleMeasResult: subcpu communication error. vx63_err=-1",
                            "vx63_getSingleMeasResult: End. vx63_err=-1"));
    EXPECT_EQ(readAnswered(readResponse(46, 1, "01 02")).points[0].Q, 2); // the next read works
}

} // namespace

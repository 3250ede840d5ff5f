#include "support/bytes.h"
#include "support/operation_test.h"

namespace {

using testing::ElementsAre;
using vx63test::filled;
using vx63test::hex32;
using vx63test::hexByte;
using vx63test::logMessages;
using vx63test::platform;
using vx63test::same;

using AngleTest = vx63test::OperationTest;

AngleCalStat s_stat;
AngleCalInfoDetail s_info;

// The whole family: requests of 4 bytes, and a failed exchange told in one of two wordings.
struct Operation {
    std::string name;
    int32_t (*call)();
    std::string request;
    std::string responseCommand;
    std::string commFailed;
};
const Operation kOperations[] = {
    {"vx63_startAngleMeas", [] { return vx63_startAngleMeas(); }, "05 06 07 00 04 00 00 00 | 01 00 00 00",
     "07 80", "subcpu"},
    {"vx63_stopAngleMeas", [] { return vx63_stopAngleMeas(); }, "05 06 07 00 04 00 00 00 | 00 00 00 00",
     "07 80", "subcpu"},
    {"vx63_startAngleCal", [] { return vx63_startAngleCal(); }, "05 06 1F 00 04 00 00 00 | 00 00 00 00",
     "1F 80", "PROC_ID_PDEV"},
    {"vx63_getAngleCalStat", [] { return vx63_getAngleCalStat(&s_stat); },
     "05 06 20 00 04 00 00 00 | 00 00 00 00", "20 80", "PROC_ID_PDEV"},
    {"vx63_getAngleCalInfoDetail", [] { return vx63_getAngleCalInfoDetail(&s_info); },
     "05 06 21 00 04 00 00 00 | 00 00 00 00", "21 80", "PROC_ID_PDEV"},
};

TEST_F(AngleTest, EachSendsItsRequestToTheDeviceService)
{
    for (const Operation& op : kOperations) {
        vx63test::removeLog();
        platform().expectSend(6, 10000, op.request);
        platform().expectReceive(5, 10000, "06 05 " + op.responseCommand + " 04 00 00 00 | 00 00 00 00");
        EXPECT_EQ(op.call(), 0) << op.name;
        const std::vector<std::string> messages = logMessages();
        const bool reads = op.name.find("_get") != std::string::npos;
        ASSERT_EQ(messages.size(), reads ? 3u : 2u) << op.name;
        EXPECT_EQ(messages.front(), op.name + ": Start.");
        EXPECT_EQ(messages.back(), op.name + ": End. vx63_err=0");
    }
}

TEST_F(AngleTest, ZeroAloneIsSuccess)
{
    const auto stat = filled<AngleCalStat>(0x5A);
    const auto info = filled<AngleCalInfoDetail>(0x5A);
    s_stat = stat;
    s_info = info;
    for (const Operation& op : kOperations) {
        for (unsigned ucRet = 1; ucRet < 256; ++ucRet) { // 2, 3 and 7 as well
            vx63test::removeLog();
            platform().expectSend(6, 10000, op.request);
            platform().expectReceive(
                5, 10000, "06 05 " + op.responseCommand + " 3C 00 00 00 | " + hexByte(ucRet) + " 00*59");
            EXPECT_EQ(op.call(), -1) << op.name << ucRet;
            EXPECT_THAT(logMessages(), ElementsAre(op.name + ": Start.", op.name + ": ret error. vx63_err=-1",
                                                   op.name + ": End. vx63_err=-1"));
        }
    }
    EXPECT_TRUE(same(s_stat, stat));
    EXPECT_TRUE(same(s_info, info));
}

TEST_F(AngleTest, AFailedExchangeIsToldInTheWordingOfItsCommand)
{
    const auto stat = filled<AngleCalStat>(0x5A);
    const auto info = filled<AngleCalInfoDetail>(0x5A);
    s_stat = stat;
    s_info = info;
    for (const Operation& op : kOperations) {
        vx63test::removeLog();
        platform().expectSend(6, 10000, op.request);
        platform().expectReceiveFails(5, 10000, -4);
        EXPECT_EQ(op.call(), -1) << op.name;
        EXPECT_THAT(logMessages(),
                    ElementsAre(op.name + ": Start.",
                                "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                                op.name + ": " + op.commFailed + " communication error. vx63_err=-1",
                                op.name + ": End. vx63_err=-1"));
    }
    EXPECT_TRUE(same(s_stat, stat));
    EXPECT_TRUE(same(s_info, info));
}

// ---- vx63_getAngleCalStat ----

constexpr char kStatRequest[] = "05 06 20 00 04 00 00 00 | 00 00 00 00";

TEST_F(AngleTest, CalibrationIsCopiedAndLogged)
{
    // 1.5, -2.25, 0.125 | 100, -0.5, 3 | 1e-6, 16777216, -0
    platform().expectSend(6, 10000, kStatRequest);
    platform().expectReceive(5, 10000,
                             "06 05 20 80 2C 00 00 00 | 00 E1 E2 E3 | FE FF FF FF |"
                             "00 00 C0 3F 00 00 10 C0 00 00 00 3E | 00 00 C8 42 00 00 00 BF 00 00 40 40 |"
                             "BD 37 86 35 00 00 80 4B 00 00 00 80");
    auto stat = filled<AngleCalStat>(0x5A);
    EXPECT_EQ(vx63_getAngleCalStat(&stat), 0);
    EXPECT_EQ(stat.lStatus, -2);
    EXPECT_EQ(stat.centerPoint1.x, 1.5f);
    EXPECT_EQ(stat.centerPoint1.y, -2.25f);
    EXPECT_EQ(stat.centerPoint1.z, 0.125f);
    EXPECT_EQ(stat.centerPoint2.x, 100.0f);
    EXPECT_EQ(stat.centerPoint2.y, -0.5f);
    EXPECT_EQ(stat.centerPoint2.z, 3.0f);
    EXPECT_EQ(stat.centerPoint3.x, 1e-6f);
    EXPECT_EQ(stat.centerPoint3.y, 16777216.0f);
    EXPECT_EQ(stat.centerPoint3.z, -0.0f);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_getAngleCalStat: Start.",
                            "vx63_getAngleCalStat: lStatus=-2, centerPoint1=(1.500000, -2.250000, 0.125000), "
                            "centerPoint2=(100.000000, -0.500000, 3.000000), "
                            "centerPoint3=(0.000001, 16777216.000000, -0.000000), ",
                            "vx63_getAngleCalStat: End. vx63_err=0"));
}

// Bits that a float register or an arithmetic unit may change, each in every place: infinities, quiet and
// signalling numbers that are none, with payloads; numbers too small to be normal.
constexpr uint32_t kBits[] = {0x7F800000, 0xFF800000, 0x7FC00000, 0xFFC00001, 0x7F800001,
                              0xFFBFFFFF, 0x7FA5A5A5, 0x00000001, 0x807FFFFF, 0x7F7FFFFF,
                              0xFF7FFFFF, 0x80000000, 0x7FFFFFFF, 0x12345678};

std::string floats(size_t first, size_t count)
{
    std::string text;
    for (size_t i = first; i < first + count; ++i) {
        text += hex32(kBits[i % std::size(kBits)]) + " ";
    }
    return text;
}

TEST_F(AngleTest, CalibrationKeepsEveryBit)
{
    for (size_t shift = 0; shift < std::size(kBits); ++shift) {
        platform().expectSend(6, 10000, kStatRequest);
        platform().expectReceive(5, 10000,
                                 "06 05 20 80 2C 00 00 00 | 00 00 00 00 | 03 00 00 00 | " + floats(shift, 9));
        auto stat = filled<AngleCalStat>(0x5A);
        EXPECT_EQ(vx63_getAngleCalStat(&stat), 0);
        uint32_t words[10];
        memcpy(words, &stat, sizeof words);
        EXPECT_EQ(words[0], 3u);
        for (size_t i = 0; i < 9; ++i) {
            EXPECT_EQ(words[1 + i], kBits[(shift + i) % std::size(kBits)]) << i;
        }
    }
}

TEST_F(AngleTest, TheLongestCalibrationLineIsWhole)
{
    platform().expectSend(6, 10000, kStatRequest);
    std::string lowest;
    for (int i = 0; i < 9; ++i) {
        lowest += "FF FF 7F FF ";
    }
    platform().expectReceive(5, 10000, "06 05 20 80 2C 00 00 00 | 00 00 00 00 | 00 00 00 80 | " + lowest);
    AngleCalStat stat;
    EXPECT_EQ(vx63_getAngleCalStat(&stat), 0);
    const std::string number = "-340282346638528859811704183484516925440.000000";
    const std::string point = "=(" + number + ", " + number + ", " + number + "), ";
    EXPECT_EQ(logMessages().at(1), "vx63_getAngleCalStat: lStatus=-2147483648, centerPoint1" + point +
                                       "centerPoint2" + point + "centerPoint3" + point);
}

// ---- vx63_getAngleCalInfoDetail ----

constexpr char kDetailRequest[] = "05 06 21 00 04 00 00 00 | 00 00 00 00";

TEST_F(AngleTest, DetailIsCopiedAndLogged)
{
    // 1, 2, ... 14
    platform().expectSend(6, 10000, kDetailRequest);
    platform().expectReceive(5, 10000,
                             "06 05 21 80 3C 00 00 00 | 00 E1 E2 E3 | 00 00 80 3F 00 00 00 40 00 00 40 40 "
                             "00 00 80 40 00 00 A0 40 00 00 C0 40 00 00 E0 40 00 00 00 41 00 00 10 41 "
                             "00 00 20 41 00 00 30 41 00 00 40 41 00 00 50 41 00 00 60 41");
    auto info = filled<AngleCalInfoDetail>(0x5A);
    EXPECT_EQ(vx63_getAngleCalInfoDetail(&info), 0);
    EXPECT_EQ(info.flRoll, 1.0f);
    EXPECT_EQ(info.flPitch, 2.0f);
    EXPECT_EQ(info.flAx, 3.0f);
    EXPECT_EQ(info.flAy, 4.0f);
    EXPECT_EQ(info.flAz, 5.0f);
    EXPECT_EQ(info.flMx, 6.0f);
    EXPECT_EQ(info.flMy, 7.0f);
    EXPECT_EQ(info.flMz, 8.0f);
    EXPECT_EQ(info.flAxRot, 9.0f);
    EXPECT_EQ(info.flAyRot, 10.0f);
    EXPECT_EQ(info.flAzRot, 11.0f);
    EXPECT_EQ(info.flMxRot, 12.0f);
    EXPECT_EQ(info.flMyRot, 13.0f);
    EXPECT_EQ(info.flMzRot, 14.0f);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_getAngleCalInfoDetail: Start.",
                            "vx63_getAngleCalInfoDetail: flRoll=1.000000, flPitch=2.000000, flAx=3.000000, "
                            "flAy=4.000000, flAz=5.000000, flMx=6.000000, flMy=7.000000, flMz=8.000000, "
                            "flAxRot=9.000000, flAyRot=10.000000, flAzRot=11.000000, flMxRot=12.000000, "
                            "flMyRot=13.000000, flMzRot=14.000000",
                            "vx63_getAngleCalInfoDetail: End. vx63_err=0"));
}

TEST_F(AngleTest, DetailKeepsEveryBit)
{
    platform().expectSend(6, 10000, kDetailRequest);
    platform().expectReceive(5, 10000, "06 05 21 80 3C 00 00 00 | 00 00 00 00 | " + floats(0, 14));
    auto info = filled<AngleCalInfoDetail>(0x5A);
    EXPECT_EQ(vx63_getAngleCalInfoDetail(&info), 0);
    EXPECT_EQ(memcmp(&info, kBits, sizeof info), 0);
    EXPECT_EQ(logMessages().at(1),
              "vx63_getAngleCalInfoDetail: flRoll=inf, flPitch=-inf, flAx=nan, flAy=-nan, flAz=nan, "
              "flMx=-nan, flMy=nan, flMz=0.000000, flAxRot=-0.000000, "
              "flAyRot=340282346638528859811704183484516925440.000000, "
              "flAzRot=-340282346638528859811704183484516925440.000000, flMxRot=-0.000000, flMyRot=nan, "
              "flMzRot=0.000000");
}

TEST_F(AngleTest, AReadCutShortIsZeroWhereItEnds)
{
    platform().expectSend(6, 10000, kDetailRequest);
    platform().expectReceive(5, 10000, "06 05 21 80 08 00 00 00 | 00 00 00 00 00 00 80 3F");
    auto info = filled<AngleCalInfoDetail>(0x5A);
    EXPECT_EQ(vx63_getAngleCalInfoDetail(&info), 0);
    EXPECT_EQ(info.flRoll, 1.0f);
    EXPECT_EQ(info.flPitch, 0.0f);
    EXPECT_EQ(info.flMzRot, 0.0f);
}

TEST_F(AngleTest, TheReadsDoNotTestTheirPointers)
{
    // A null pointer is not refused: the request goes out.
    platform().expectSend(6, 10000, kStatRequest);
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_getAngleCalStat(nullptr), -1);
    platform().expectSend(6, 10000, kDetailRequest);
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_getAngleCalInfoDetail(nullptr), -1);
}

} // namespace

#include "support/set_file_test.h"

#include <cstdio>
#include <sstream>

namespace {

using vx63test::records;
using vx63test::setFile;

using FactoryTest = vx63test::SetFileTest;

std::vector<uint8_t> factory(uint32_t id)
{
    std::vector<uint8_t> contents(setFile(id).rows * setFile(id).recordSize, 0xEE);
    EXPECT_EQ(vx63_readSetFile(id, contents.data(), nullptr, 1), static_cast<int32_t>(setFile(id).rows));
    return contents;
}

// Record index of a file's factory contents.
std::vector<uint8_t> factoryRecord(uint32_t id, size_t index)
{
    const std::vector<uint8_t> contents = factory(id);
    const auto first = contents.begin() + static_cast<ptrdiff_t>(index * setFile(id).recordSize);
    return {first, first + setFile(id).recordSize};
}

// ---- Short tables: a record a line, in the order of the file's columns ----

TEST_F(FactoryTest, PowerOff)
{
    EXPECT_EQ(factory(0), records(0, R"(
        0 5 10 15 30 60 10
    )"));
}

TEST_F(FactoryTest, Volume)
{
    EXPECT_EQ(factory(1), records(1, R"(
        0 1 2 3 0
    )"));
}

TEST_F(FactoryTest, Brightness)
{
    EXPECT_EQ(factory(2), records(2, R"(
        3 2 1 2
    )"));
}

TEST_F(FactoryTest, LocalFrequencies)
{
    EXPECT_EQ(factory(3), records(3, R"(
        2 0 10678000 4294967295 4294967295 4294967295 4294967295 4294967295
        2 1 9505000 4294967295 4294967295 4294967295 4294967295 4294967295
        3 0 10678000 4294967295 4294967295 4294967295 4294967295 4294967295
        3 1 9505000 4294967295 4294967295 4294967295 4294967295 4294967295
        4 2 10678000 4294967295 4294967295 11200000 11300000 0
        4 3 10678000 4294967295 4294967295 11200000 11300000 0
        5 2 10678000 4294967295 4294967295 11200000 11300000 0
        5 3 10678000 4294967295 4294967295 11200000 11300000 0
        6 2 10678000 4294967295 4294967295 11200000 11300000 0
        6 3 10678000 4294967295 4294967295 11200000 11300000 0
        7 2 10678000 4294967295 4294967295 11200000 11300000 0
        7 3 10678000 4294967295 4294967295 11200000 11300000 0
    )"));
}

TEST_F(FactoryTest, Thresholds)
{
    EXPECT_EQ(factory(4), records(4, R"(
        1 0 1 200 470 900 1200 50 200 250 350 100 -4 200 -6 100 -9 100 -10 50 200 250 350
        2 1 26 200 500 810 1200 50 90 170 350 100 -4 200 -6 100 -9 100 -10 50 90 170 350
        2 2 248 200 500 810 1200 50 110 180 350 100 -4 200 -6 100 -9 100 -10 50 110 180 350
        3 1 26 200 500 810 1200 50 60 120 350 100 -4 200 -6 100 -9 100 -10 50 60 120 350
        3 2 248 200 500 810 1200 50 70 140 350 100 -4 200 -6 100 -9 100 -10 50 70 140 350
        4 4 8 200 500 810 1200 50 70 100 250 100 -4 200 -6 100 -9 100 -10 50 70 100 250
        4 5 232 200 500 810 1200 50 80 100 250 100 -4 200 -6 100 -9 100 -10 50 80 100 250
        5 4 8 200 500 810 1200 50 70 100 250 100 -4 200 -6 100 -9 100 -10 50 70 100 250
        5 5 232 200 500 810 1200 50 80 100 250 100 -4 200 -6 100 -9 100 -10 50 80 100 250
        6 4 8 200 500 810 1200 50 70 100 250 100 -4 200 -6 100 -9 100 -10 50 70 100 250
        6 5 232 200 500 810 1200 50 80 100 250 100 -4 200 -6 100 -9 100 -10 50 80 100 250
        7 4 8 200 500 810 1200 50 70 100 250 100 -4 200 -6 100 -9 100 -10 50 70 100 250
        7 5 232 200 500 810 1200 50 80 100 250 100 -4 200 -6 100 -9 100 -10 50 80 100 250
        8 0 1 200 470 900 1200 50 200 250 350 100 -4 200 -6 100 -9 100 -10 50 200 250 350
        8 3 1024 200 490 810 1200 200 260 300 400 100 -4 200 -6 100 -9 100 -10 200 260 300 400
        8 3 4096 200 570 810 1200 200 310 340 400 100 -4 200 -6 100 -9 100 -10 200 310 340 400
        8 9 1024 200 490 810 1200 200 260 300 400 100 -4 200 -6 100 -9 100 -10 200 260 300 400
        8 9 4096 200 570 810 1200 200 310 340 400 100 -4 200 -6 100 -9 100 -10 200 310 340 400
        11 10 8192 200 500 900 1200 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0
        12 0 1 200 250 450 1200 50 200 250 350 100 -4 200 -6 100 -9 100 -10 50 200 250 350
        12 6 4096 200 570 810 1200 200 300 340 400 100 -4 200 -6 100 -9 100 -10 50 300 340 350
        13 10 0 200 200 1200 1200 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0
        14 10 0 200 200 1200 1200 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0
        15 10 8192 200 600 900 1200 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0
    )"));
}

TEST_F(FactoryTest, CnrMer)
{
    EXPECT_EQ(factory(5), records(5, R"(
        0 1 1
        0 1 0
        0 1 0
        0 1 1
        0 1 1
        0 1 1
        0 1 1
        0 1 0
        0 1 0
        0 1 0
        0 1 0
        255 255 255
        255 255 255
        255 255 255
        255 255 255
    )"));
}

TEST_F(FactoryTest, CatvFrequencies)
{
    EXPECT_EQ(factory(6), records(6, R"(
        1 5120 231000 237000 243000 249000 1 1
        1 1 231143 237143 243143 249143 0 1
        2 5120 233000 239000 245000 251000 1 0
        2 1 233143 239143 245143 251143 0 0
    )"));
}

TEST_F(FactoryTest, CableLoss)
{
    EXPECT_EQ(factory(7), records(7, R"(
        10000 0
        770000 0
        950000 0
        3224000 0
    )"));
}

TEST_F(FactoryTest, CableLossEnable)
{
    EXPECT_EQ(factory(8), records(8, R"(
        1
    )"));
}

TEST_F(FactoryTest, Input)
{
    EXPECT_EQ(factory(9), records(9, R"(
        0 1 0
    )"));
}

TEST_F(FactoryTest, CatvModulations)
{
    EXPECT_EQ(factory(10), records(10, R"(
        1 1024 4096
    )"));
}

TEST_F(FactoryTest, DcOutput)
{
    EXPECT_EQ(factory(11), records(11, R"(
        0 2 1 4 3 2 1 2 1 0
        1 2 2 2 2 2 2 2 2 2
        2 0 0 0 0 0 0 0 0 0
    )"));
}

TEST_F(FactoryTest, OpticalMeasurement)
{
    EXPECT_EQ(factory(12), records(12, R"(
        1300 1310 1490
    )"));
}

TEST_F(FactoryTest, ConstellationPoints)
{
    EXPECT_EQ(factory(13), records(13, R"(
        1000 2000 4000 2000
    )"));
}

TEST_F(FactoryTest, Pilot)
{
    EXPECT_EQ(factory(27), records(27, R"(
        PL_1 70000
        PL_2 73000
        PL_3 75500
        PL_4 91250
        PL_5 109250
        PL_6 148000
        PL_7 246000
        PL_8 288000
        PL_9 298000
        PL_10 300000
        PL_11 301250
        PL_12 349250
        PL_13 450000
        PL_14 451250
        PL_15 495250
        PL_16 747250
        PL_17 750000
        PL_18 753250
        PL_19 765250
        PL_20 771250
    )"));
}

TEST_F(FactoryTest, Lte)
{
    EXPECT_EQ(factory(28), records(28, R"(
        UL-L 723000 10000
        UL-M 733000 10000
        UL-H 743000 10000
        DL-L 778000 10000
        DL-M 788000 10000
        DL-H 798000 10000
    )"));
}

TEST_F(FactoryTest, ManualBroadcastSystems)
{
    EXPECT_EQ(factory(30), records(30, R"(
        0 1
        1 0
        2 0
        1 0
        2 0
        0 1
        3 1024
        0 1
        6 4096
        10 8192
        5 0
        5 0
        5 0
        5 0
        5 0
        5 0
        5 0
        5 0
        5 0
        5 0
        10 0
        10 0
        10 8192
    )"));
}

TEST_F(FactoryTest, BroadcastSystemConversion)
{
    EXPECT_EQ(factory(31), records(31, R"(
        1 0 0
        2 1 1
        2 2 17
        3 1 1
        3 2 17
        4 4 4
        4 5 5
        5 4 4
        5 5 5
        6 4 4
        6 5 5
        7 4 4
        7 5 5
        8 0 35
        8 3 35
        8 9 35
        9 0 35
        9 3 35
        9 9 35
        10 0 35
        10 3 35
        10 9 35
        11 10 37
        12 0 0
        12 6 40
        13 10 38
        14 10 36
        15 10 37
    )"));
}

TEST_F(FactoryTest, CatvBroadcastSystemConversion)
{
    EXPECT_EQ(factory(32), records(32, R"(
        0 1 0
        3 1024 12
        3 4096 13
        9 1024 10
        9 4096 11
    )"));
}

TEST_F(FactoryTest, FmPresets)
{
    EXPECT_EQ(factory(39), records(39, R"(
        FM_1 76500
        FM_2 78100
        FM_3 80200
        FM_4 85100
        FM_5 88100
        FM_6 90900
        FM_7 91900
        FM_8 93300
        FM_9 0
        FM_10 0
        FM_11 0
        FM_12 0
    )"));
}

TEST_F(FactoryTest, UpStreamPresets)
{
    EXPECT_EQ(factory(40), records(40, R"(
        UL_1 10000
        UL_2 15000
        UL_3 20000
        UL_4 30000
        UL_5 50000
        UL_6 55000
        UL_7 60000
        UL_8 0
        UL_9 0
        UL_10 0
        UL_11 0
        UL_12 0
    )"));
}

TEST_F(FactoryTest, TheExportedTableIsThatOfTheManualBroadcastSystems)
{
    const auto* const first = reinterpret_cast<const uint8_t*>(g_measSetManuBdsysModDef);
    EXPECT_EQ(std::vector<uint8_t>(first, first + sizeof g_measSetManuBdsysModDef), factory(30));
}

// SINGLE1_ISMES, _MESDATA, _TMNOSIGNAL, _TMLOCK, _JUDGEMESDATA, then the same of MULTI1; behind the record's
// number. Every other column is 0.
constexpr char kPmeasMng[] = R"(
        0 1 7 0 0 0 0 0 0 0 0
        1 1 1 0 0 0 0 0 0 0 0
        2 1 1 0 0 0 0 0 0 0 0
        3 1 39 0 0 0 0 0 0 0 0
        4 1 39 0 0 0 0 0 0 0 0
        5 1 39 0 0 0 0 0 0 0 0
        6 1 15 0 0 0 0 0 0 0 0
        7 0 0 0 0 0 0 0 0 0 0
        8 0 0 0 0 0 0 0 0 0 0
        9 1 47 0 0 0 0 0 0 0 0
        10 1 47 0 0 0 0 0 0 0 0
        11 1 47 0 0 0 0 0 0 0 0
        12 0 0 0 0 0 0 0 0 0 0
        13 0 0 0 0 0 0 0 0 0 0
        14 0 0 0 0 0 0 0 0 0 0
        15 1 39 0 0 0 0 0 0 0 0
        16 0 0 0 0 0 0 0 0 0 0
        17 0 0 0 0 0 0 0 0 0 0
        18 2 0 2000 2000 1 2 7 2000 2000 3
        19 3 0 1500 0 1 3 1 1500 0 1
        20 3 0 2000 0 1 3 1 2000 0 1
        21 2 0 2000 2000 1 2 39 2000 2000 3
        22 2 0 2000 2000 1 2 39 2000 2000 3
        23 2 0 2500 2500 1 2 39 2500 2500 3
        24 2 0 4000 4000 7 2 7 4000 4000 7
        25 3 0 0 0 0 3 1 4000 0 1
        26 3 0 0 0 0 3 1 4000 0 1
        27 2 0 4000 4000 39 2 39 4000 4000 39
        28 2 0 4000 4000 39 2 39 4000 4000 39
        29 2 0 4000 4000 39 2 39 4000 4000 39
        30 2 0 4000 4000 7 2 7 4000 4000 7
        31 3 0 4000 0 0 3 1 3000 0 1
        32 3 0 4000 0 0 3 1 3000 0 1
        33 2 0 4000 4000 39 2 39 3000 3000 39
        34 2 0 4000 4000 39 2 39 4000 4000 39
        35 2 0 4000 4000 39 2 39 4000 4000 39
        36 0 0 0 0 0 1 7 5000 5000 7
        37 0 0 0 0 0 0 0 0 0 0
        38 0 0 0 0 0 0 0 0 0 0
        39 0 0 0 0 0 0 0 0 0 0
        40 0 0 0 0 0 0 0 0 0 0
        41 0 0 0 0 0 0 0 0 0 0
        42 0 0 0 0 0 1 7 2000 2000 2
        43 0 0 0 0 0 1 1 2000 0 0
        44 0 0 0 0 0 1 1 2000 0 0
        45 0 0 0 0 0 1 39 2000 2000 34
        46 0 0 0 0 0 1 39 2000 2000 34
        47 0 0 0 0 0 1 39 2000 2000 34
    )";

TEST_F(FactoryTest, MeasurementManagement)
{
    std::string lines;
    std::istringstream in(kPmeasMng);
    int expectedNumber = 0;
    for (int number = 0; in >> number; ++expectedNumber) {
        ASSERT_EQ(number, expectedNumber);
        std::string s[5];
        std::string m[5];
        in >> s[0] >> s[1] >> s[2] >> s[3] >> s[4] >> m[0] >> m[1] >> m[2] >> m[3] >> m[4];
        lines += "0  0 0 0 0 0 0 0  " + s[0] + " " + s[1] + " 0 " + s[2] + " " + s[3] + " " + s[4] + " 0  " +
                 "0 0 0 0 0 0 0  " + m[0] + " " + m[1] + " 0 " + m[2] + " " + m[3] + " " + m[4] + " 0\n";
    }
    ASSERT_EQ(expectedNumber, 48);
    EXPECT_EQ(factory(34), records(34, lines));
}

// ---- Channel plans ----

TEST_F(FactoryTest, RecordsLieInMemoryAsTheColumnsSay)
{
    EXPECT_EQ(factoryRecord(16, 0), vx63test::bytes("31 33 00 00 00 00 00 00 | 37 38 07 00")); // 13, 473143
    EXPECT_EQ(factoryRecord(17, 12), // 1, BS-2, 11746660
              vx63test::bytes("01 00 00 00 | 42 53 2D 32 00 00 00 00 | 64 3D B3 00"));
    EXPECT_EQ(factoryRecord(23, 149), // C101, 995000, 995143
              vx63test::bytes("43 31 30 31 00 00 00 00 | B8 2E 0F 00 | 47 2F 0F 00"));
    EXPECT_EQ(factoryRecord(31, 0), vx63test::bytes("00 00 00 00 01 00"));           // BAND 1 lies last
    EXPECT_EQ(factoryRecord(32, 1), vx63test::bytes("00 04 00 00 | 03 00 | 0C 00")); // MOD 1024 lies first
    EXPECT_EQ(factoryRecord(39, 9), vx63test::bytes("46 4D 20 31 30 00 00 00 | 00 00 00 00")); // "FM 10"
}

TEST_F(FactoryTest, Uhf)
{
    EXPECT_EQ(factoryRecord(16, 39), records(16, "52 707143"));
    std::string lines;
    for (int channel = 13; channel <= 52; ++channel) {
        lines += std::to_string(channel) + " " + std::to_string(395143 + 6000 * channel) + "\n";
    }
    EXPECT_EQ(factory(16), records(16, lines));
}

// Transponders PREFIXfirst, in steps of numberStep to PREFIXlast, from a frequency on in steps.
std::string transponders(int wave, const char* prefix, int first, int last, int numberStep, int freq,
                         int freqStep)
{
    std::string lines;
    for (int number = first; number <= last; number += numberStep, freq += freqStep) {
        lines +=
            std::to_string(wave) + " " + prefix + std::to_string(number) + " " + std::to_string(freq) + "\n";
    }
    return lines;
}

const std::string kBsOdd = transponders(0, "BS-", 1, 23, 2, 11727480, 38360);
const std::string kBsEven = transponders(1, "BS-", 2, 24, 2, 11746660, 38360);
const std::string kCsEven = transponders(0, "ND", 2, 24, 2, 12291000, 40000) + "0 ND26 12228000\n";
const std::string kCsOdd = transponders(1, "ND", 1, 23, 2, 12271000, 40000) + "1 ND25 12231000\n";

TEST_F(FactoryTest, Bs)
{
    EXPECT_EQ(factoryRecord(17, 0), records(17, "0 BS-1 11727480"));
    EXPECT_EQ(factoryRecord(17, 11), records(17, "0 BS-23 12149440"));
    EXPECT_EQ(factoryRecord(17, 23), records(17, "1 BS-24 12168620"));
    EXPECT_EQ(factory(17), records(17, kBsOdd + kBsEven));
}

TEST_F(FactoryTest, Cs)
{
    EXPECT_EQ(factoryRecord(18, 11), records(18, "0 ND24 12731000"));
    EXPECT_EQ(factoryRecord(18, 12), records(18, "0 ND26 12228000"));
    EXPECT_EQ(factoryRecord(18, 24), records(18, "1 ND23 12711000"));
    EXPECT_EQ(factoryRecord(18, 25), records(18, "1 ND25 12231000"));
    EXPECT_EQ(factory(18), records(18, kCsEven + kCsOdd));
}

TEST_F(FactoryTest, BsAndCs)
{
    EXPECT_EQ(factoryRecord(41, 12), records(41, "0 ND2 12291000"));
    EXPECT_EQ(factoryRecord(41, 25), records(41, "1 BS-2 11746660"));
    EXPECT_EQ(factoryRecord(41, 49), records(41, "1 ND25 12231000"));
    EXPECT_EQ(factory(41), records(41, kBsOdd + kCsEven + kBsEven + kCsOdd));
}

TEST_F(FactoryTest, SccB)
{
    EXPECT_EQ(factoryRecord(19, 11), records(19, "3 12 12730000"));
    EXPECT_EQ(factoryRecord(19, 22), records(19, "2 23 12710000"));
    EXPECT_EQ(factory(19), records(19, transponders(3, "", 1, 12, 1, 12290000, 40000) +
                                           transponders(2, "", 13, 23, 1, 12310000, 40000)));
}

TEST_F(FactoryTest, SccC)
{
    EXPECT_EQ(factory(20), records(20, R"(
        2 D1 12320000
        2 D2 12360000
        2 D3 12400000
        2 D4 12440000
        2 D5 12523000
        2 D6 12553000
        2 D7 12583000
        2 D8 12613000
        2 D9 12643000
        2 D10 12673000
        2 D11 12703000
        2 D12 12733000
        3 D13 12340000
        3 D14 12380000
        3 D15 12420000
        3 D16 12460000
        3 D17 12508000
        3 D18 12538000
        3 D19 12568000
        3 D20 12598000
        3 D21 12628000
        3 D22 12658000
        3 D23 12688000
        3 D24 12718000
    )"));
}

TEST_F(FactoryTest, Jsat3a)
{
    EXPECT_EQ(factory(21), records(21, R"(
        3 K-1 12268250
        3 K-3 12308250
        3 K-5 12348250
        3 K-7 12388250
        3 K-9 12428250
        3 K-11 12468250
        3 K-13 12508250
        3 K-15 12538250
        3 K-17 12568250
        3 K-19 12598250
        3 K-21 12628250
        3 K-23 12658250
        3 K-25 12688250
        3 K-27 12718250
        2 K-2 12288250
        2 K-4 12328250
        2 K-6 12368250
        2 K-8 12408250
        2 K-10 12448250
        2 K-12 12488250
        2 K-14 12523250
        2 K-16 12553250
        2 K-18 12583250
        2 K-20 12613250
        2 K-22 12643250
        2 K-24 12673250
        2 K-26 12703250
        2 K-28 12733250
    )"));
}

TEST_F(FactoryTest, Jsat4b)
{
    EXPECT_EQ(factoryRecord(22, 15), records(22, "3 K-31 12718000"));
    EXPECT_EQ(factoryRecord(22, 31), records(22, "2 K-32 12733000"));
    EXPECT_EQ(factory(22), records(22, transponders(3, "K-", 1, 31, 2, 12268000, 30000) +
                                           transponders(2, "K-", 2, 32, 2, 12283000, 30000)));
}

TEST_F(FactoryTest, Antennas)
{
    EXPECT_EQ(factoryRecord(37, 7), records(37, "3 JD15 12718250"));
    EXPECT_EQ(factoryRecord(37, 15), records(37, "2 JD16 12733250"));
    EXPECT_EQ(factory(37), records(37, transponders(3, "JD", 1, 15, 2, 12508250, 30000) +
                                           transponders(2, "JD", 2, 16, 2, 12523250, 30000)));
    EXPECT_EQ(factoryRecord(38, 0), records(38, "3 JD1 12508000"));
    EXPECT_EQ(factory(38), records(38, transponders(3, "JD", 1, 15, 2, 12508000, 30000) +
                                           transponders(2, "JD", 2, 16, 2, 12523000, 30000)));
}

// Each channel with the centre of a QAM signal in MHz.
constexpr char kCableChannels[] = R"(
    1 93  2 99  3 105  C13 111  C14 117  C15 123  C16 129  C17 135  C18 141  C19 147  C20 153  C21
    159  C22 167  4 173  5 179  6 185  8 195  9 201  10 207  11 213  12 219  C23 225  C24 231  C25
    237  C26 243  C27 249  C28 255  C29 261  C30 267  C31 273  C32 279  C33 285  C34 291  C35 297
    C36 303  C37 309  C38 315  C39 321  C40 327  C41 333  C42 339  C43 345  C44 351  C45 357  C46
    363  C47 369  C48 375  C49 381  C50 387  C51 393  C52 399  C53 405  C54 411  C55 417  C56 423
    C57 429  C58 435  C59 441  C60 447  C61 453  C62 459  C63 465  13 473  14 479  15 485  16 491
    17 497  18 503  19 509  20 515  21 521  22 527  23 533  24 539  25 545  26 551  27 557  28 563
    29 569  30 575  31 581  32 587  33 593  34 599  35 605  36 611  37 617  38 623  39 629  40 635
    41 641  42 647  43 653  44 659  45 665  46 671  47 677  48 683  49 689  50 695  51 701  52 707
    53 713  54 719  55 725  56 731  57 737  58 743  59 749  60 755  61 761  62 767  C64 773  C65 779
    C66 785  C67 791  C68 797  C69 803  C70 809  C71 815  C72 821  C73 827  C74 833  C75 839  C76
    845  C77 851  C78 857  C79 863  C80 869  C81 875  C82 881  C83 887  C84 893  C85 899  C86 905
    C87 911  C88 917  C89 923  C90 929  C91 935  C92 941  C93 947  C94 953  C95 959  C96 965  C97
    971  C98 977  C99 983  C100 989  C101 995
)";

TEST_F(FactoryTest, Catv)
{
    std::vector<std::string> lines;
    std::istringstream in(kCableChannels);
    std::string name;
    for (int megahertz = 0; in >> name >> megahertz;) {
        const std::string number = std::to_string(megahertz);
        lines.push_back(name + " " + number + "000 " + number + "143\n");
    }
    ASSERT_EQ(lines.size(), 150u);
    EXPECT_EQ(lines[15], "6 185000 185143\n"); // there is no 7
    EXPECT_EQ(lines[16], "8 195000 195143\n");
    std::string low;
    std::string high;
    for (size_t i = 0; i < lines.size(); ++i) {
        (i < 62 ? low : high) += lines[i];
    }
    EXPECT_EQ(factory(23), records(23, low + high));
    EXPECT_EQ(factory(24), records(24, low));
    EXPECT_EQ(factory(25), records(25, high));
}

// Each channel with its frequency in kHz.
constexpr char kSkypChannels[] = R"(
    H001 93250  H002 99750  H003 106250  H004 112750  H005 119250  H006 125750  H007 132250  H008
    138750  H009 145250  H010 151750  H011 158250  H-11 159250  H012 164750  H-12 165750  H013
    171250  H014 177750  H015 184250  H016 190750  H017 197250  H018 203750  H019 210250  H020
    216750  H021 223250  H022 229750  H023 236250  H024 242750  H025 249250  H026 255750  H-26
    259750  H027 262250  H-27 266250  H028 268750  H-28 272750  H029 275250  H030 281750  H031
    288250  H032 294750  H033 301250  H034 307750  H035 314250  H036 320750  H037 327250  H038
    333750  H039 340250  H040 346750  H041 353250  H042 359750  H043 366250  H044 372750  H045
    379250  H046 385750  H047 392250  H048 398750  H049 405250  H050 411750  H051 418250  H052
    424750  H053 431250  H054 437750  H055 444250  H056 450750  H057 457250  H058 463750  H059
    470250  H060 476750  H061 483250  H-61 484750  H062 489750  H063 496250  H-63 497250  H064
    502750  H065 509250  H066 515750  H067 522250  H068 528750  H069 535250  H070 541750  H071
    548250  H072 554750  H073 561250  H074 567750  H075 574250  H076 580750  H077 587250  H078
    593750  H079 600250  H080 606750  H081 613250  H082 619750  H083 626250  H084 632750  H085
    639250  H086 645750  H087 652250  H088 658750  H089 665250  H090 671750  H091 678250  H092
    684750  H093 691250  H094 697750  H095 704250  H096 710750  H097 717250  H098 723750  H099
    730250  H100 736750  H101 743250  H102 749750  H103 756250  H104 762750  H105 769250  H106
    775750
)";

TEST_F(FactoryTest, Skyp)
{
    std::string lines;
    std::istringstream in(kSkypChannels);
    std::string freq;
    for (std::string name; in >> name >> freq;) {
        lines += name + " " + freq + "\n";
    }
    EXPECT_EQ(factory(26), records(26, lines));
}

TEST_F(FactoryTest, Fm)
{
    EXPECT_EQ(factoryRecord(29, 0), records(29, "70.0 70000"));
    EXPECT_EQ(factoryRecord(29, 250), records(29, "95.0 95000"));
    std::string lines;
    for (int tenths = 700; tenths <= 950; ++tenths) {
        char line[32];
        snprintf(line, sizeof line, "%.1f %d00\n", tenths / 10.0, tenths);
        lines += line;
    }
    EXPECT_EQ(factory(29), records(29, lines));
}

TEST_F(FactoryTest, UpStream)
{
    EXPECT_EQ(factoryRecord(33, 0), records(33, "10.00 10000"));
    EXPECT_EQ(factoryRecord(33, 1), records(33, "10.05 10050"));
    EXPECT_EQ(factoryRecord(33, 500), records(33, "35.00 35000"));
    EXPECT_EQ(factoryRecord(33, 1000), records(33, "60.00 60000"));
    std::string lines;
    for (int hundredths = 1000; hundredths <= 6000; hundredths += 5) {
        char line[32];
        snprintf(line, sizeof line, "%.2f %d0\n", hundredths / 100.0, hundredths);
        lines += line;
    }
    EXPECT_EQ(factory(33), records(33, lines));
}

} // namespace

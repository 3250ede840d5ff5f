#include "support/bytes.h"
#include "support/operation_test.h"

#include <cstring>
#include <filesystem>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using vx63test::hexByte;
using vx63test::kKeyLogPath;
using vx63test::logMessages;
using vx63test::platform;

using DeviceInformationTest = vx63test::OperationTest;

template <class Record>
Record filled(int byte)
{
    Record record;
    memset(&record, byte, sizeof record);
    return record;
}

// The record in memory, gaps between its fields included.
template <class Record>
std::vector<uint8_t> memoryOf(const Record& record)
{
    std::vector<uint8_t> memory(sizeof record);
    memcpy(memory.data(), &record, sizeof record);
    return memory;
}

// ---- vx63_getProductInfo ----

constexpr char kProductRequest[] = "05 00 05 00 04 00 00 00 | 00 00 00 00";

TEST_F(DeviceInformationTest, ProductInfoIsCopiedAndLogged)
{
    platform().expectSend(0, 10000, kProductRequest);
    platform().expectReceive(5, 10000,
                             "00 05 05 80 69 00 00 00 |"
                             "56 58 36 33 00 00 00 00 |"                         // VX63
                             "4F 31 00 00 00 |"                                  // O1
                             "53 30 30 31 00 00 00 00 00 00 00 00 |"             // S001
                             "42 31 2E 30 00 00 00 00 00 00 00 00 00 00 00 00 |" // B1.0
                             "4D 32 2E 31 00 00 00 00 00 00 00 00 00 00 00 00 |" // M2.1
                             "53 33 2E 32 00 00 00 00 00 00 00 00 00 00 00 00 |" // S3.2
                             "51 34 2E 33 00 00 00 00 00 00 00 00 00 00 00 00 |" // Q4.3
                             "50 35 2E 34 00 00 00 00 00 00 00 00 00 00 00 7A"); // P5.4, and a byte behind it
    ProductInfo info = filled<ProductInfo>(0x5A);
    EXPECT_EQ(vx63_getProductInfo(&info), 0);
    EXPECT_EQ(memcmp(info.cModelCode, "VX63\0\0\0", 8), 0);
    EXPECT_EQ(memcmp(info.cOptInfo, "O1\0\0", 5), 0);
    EXPECT_EQ(memcmp(info.cSerialNo, "S001\0\0\0\0\0\0\0", 12), 0);
    EXPECT_EQ(memcmp(info.cBootPrgVer, "B1.0\0\0\0\0\0\0\0\0\0\0\0", 16), 0);
    EXPECT_EQ(memcmp(info.cMainPrgVer, "M2.1\0\0\0\0\0\0\0\0\0\0\0", 16), 0);
    EXPECT_EQ(memcmp(info.cSubPrgVer, "S3.2\0\0\0\0\0\0\0\0\0\0\0", 16), 0);
    EXPECT_EQ(memcmp(info.cQtVer, "Q4.3\0\0\0\0\0\0\0\0\0\0\0", 16), 0);
    EXPECT_EQ(memcmp(info.cProductVer, "P5.4\0\0\0\0\0\0\0\0\0\0\0z", 16), 0);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_getProductInfo: Start.",
                            "vx63_getProductInfo: cModelCode=VX63, cOptInfo=O1, cSerialNo=S001, "
                            "cBootPrgVer=B1.0, cMainPrgVer=M2.1, cSubPrgVer=S3.2, cQtVer=Q4.3, "
                            "cProductVer=P5.4",
                            "vx63_getProductInfo: End. vx63_err=0"));
}

TEST_F(DeviceInformationTest, ProductInfoFullFieldsGetNoTerminator)
{
    platform().expectSend(0, 10000, kProductRequest);
    platform().expectReceive(
        5, 10000, "00 05 05 80 69 00 00 00 | 61*8 | 62*5 | 63*12 | 64*16 | 65*16 | 66*16 | 67*16 | 68*16");
    struct {
        ProductInfo info;
        char after[8];
    } memory = {filled<ProductInfo>(0x5A), {'!', '!', '!', '!', '!', '!', '!', '\0'}};
    EXPECT_EQ(vx63_getProductInfo(&memory.info), 0);
    EXPECT_EQ(memcmp(&memory,
                     "aaaaaaaabbbbbccccccccccccddddddddddddddddeeeeeeeeeeeeeeeeffffffffffffffff"
                     "gggggggggggggggghhhhhhhhhhhhhhhh!!!!!!!",
                     sizeof memory),
              0);
    EXPECT_EQ(logMessages().at(1),
              "vx63_getProductInfo: cModelCode=aaaaaaaa, cOptInfo=bbbbb, cSerialNo=cccccccccccc, "
              "cBootPrgVer=dddddddddddddddd, cMainPrgVer=eeeeeeeeeeeeeeee, cSubPrgVer=ffffffffffffffff, "
              "cQtVer=gggggggggggggggg, cProductVer=hhhhhhhhhhhhhhhh");
}

TEST_F(DeviceInformationTest, ProductInfoOfAShortBodyIsZeroWhereItEnds)
{
    platform().expectSend(0, 10000, kProductRequest);
    platform().expectReceive(5, 10000, "00 05 05 80 0A 00 00 00 | 61*8 | 62 63");
    ProductInfo info = filled<ProductInfo>(0x5A);
    EXPECT_EQ(vx63_getProductInfo(&info), 0);
    ProductInfo expected = {};
    memcpy(&expected, "aaaaaaaabc", 10);
    EXPECT_EQ(memoryOf(info), memoryOf(expected));
    EXPECT_EQ(logMessages().at(1),
              "vx63_getProductInfo: cModelCode=aaaaaaaa, cOptInfo=bc, cSerialNo=, cBootPrgVer=, "
              "cMainPrgVer=, cSubPrgVer=, cQtVer=, cProductVer=");
}

TEST_F(DeviceInformationTest, ProductInfoTakesAnEmptyBodyAndAFirstByteOfAnyKind)
{
    platform().expectSend(0, 10000, kProductRequest);
    platform().expectReceive(5, 10000, "00 05 05 80 00 00 00 00");
    ProductInfo info = filled<ProductInfo>(0x5A);
    EXPECT_EQ(vx63_getProductInfo(&info), 0);
    EXPECT_EQ(memoryOf(info), memoryOf(filled<ProductInfo>(0)));

    // There is no result byte: 2 and 255 are text like any other.
    for (const char* first : {"02", "FF"}) {
        platform().expectSend(0, 10000, kProductRequest);
        platform().expectReceive(5, 10000, std::string("00 05 05 80 69 00 00 00 | ") + first + " 00*104");
        EXPECT_EQ(vx63_getProductInfo(&info), 0);
        EXPECT_EQ(hexByte(static_cast<uint8_t>(info.cModelCode[0])), first);
    }
}

TEST_F(DeviceInformationTest, ProductInfoRefusesANullPointer)
{
    EXPECT_EQ(vx63_getProductInfo(nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getProductInfo: Start.",
                                           "vx63_getProductInfo: arg error. pProductInfo=(nil)",
                                           "vx63_getProductInfo: End. vx63_err=-2"));
}

TEST_F(DeviceInformationTest, ProductInfoLeavesTheRecordWhenTheExchangeFails)
{
    platform().expectSend(0, 10000, kProductRequest);
    platform().expectReceiveFails(5, 10000, -4);
    ProductInfo info = filled<ProductInfo>(0x5A);
    EXPECT_EQ(vx63_getProductInfo(&info), -1);
    EXPECT_EQ(memoryOf(info), memoryOf(filled<ProductInfo>(0x5A)));
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_getProductInfo: Start.",
                            "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                            "vx63_getProductInfo: PROC_ID_PSYS communication error. vx63_err=-1",
                            "vx63_getProductInfo: End. vx63_err=-1"));
}

// ---- vx63_getFailinfo: logs no start and no end ----

constexpr char kFailRequest[] = "05 00 04 00 04 00 00 00 | 00 00 00 00";

TEST_F(DeviceInformationTest, FailinfoIsCopiedAndLogged)
{
    platform().expectSend(0, 10000, kFailRequest);
    platform().expectReceive(5, 10000,
                             "00 05 04 80 28 00 00 00 | CD 0A 01 FE 2C 01 E6 E7 | 00 05 0F 10 1F 7F 80 FF "
                             "08 09 0A 0B 0C 0D 0E 01 20 21 22 23 24 25 26 27 28 29 2A 2B 2C 2D 2E 2F");
    FailInfo info = filled<FailInfo>(0x5A);
    EXPECT_EQ(vx63_getFailinfo(&info), 0);
    EXPECT_EQ(info.usCode, 0x0ACD);
    EXPECT_EQ(info.ucStat, 1);
    EXPECT_EQ(info.ucCtl, 254);
    EXPECT_EQ(info.usWait, 300);
    EXPECT_THAT(info.ucReserved, ElementsAre(0xE6, 0xE7));
    EXPECT_THAT(info.ucAddInfo, ElementsAre(0x00, 0x05, 0x0F, 0x10, 0x1F, 0x7F, 0x80, 0xFF, 0x08, 0x09, 0x0A,
                                            0x0B, 0x0C, 0x0D, 0x0E, 0x01, 0x20, 0x21, 0x22, 0x23, 0x24, 0x25,
                                            0x26, 0x27, 0x28, 0x29, 0x2A, 0x2B, 0x2C, 0x2D, 0x2E, 0x2F));
    EXPECT_THAT(
        logMessages(),
        ElementsAre("vx63_getFailinfo: usCode=0x0ACD, ucStat=1, ucCtl=254, usWait=300, ucAddInfo[0]-[31]= "
                    "00, 0X5, 0XF, 0X10, 0X1F, 0X7F, 0X80, 0XFF, 0X8, 0X9, 0XA, 0XB, 0XC, 0XD, 0XE, 0X1, "
                    "0X20, 0X21, 0X22, 0X23, 0X24, 0X25, 0X26, 0X27, 0X28, 0X29, 0X2A, 0X2B, 0X2C, 0X2D, "
                    "0X2E, 0X2F"));
}

TEST_F(DeviceInformationTest, FailinfoLogsItsLongestLineWhole)
{
    platform().expectSend(0, 10000, kFailRequest);
    platform().expectReceive(5, 10000, "00 05 04 80 28 00 00 00 | FF*40");
    FailInfo info = {};
    EXPECT_EQ(vx63_getFailinfo(&info), 0);
    EXPECT_EQ(memoryOf(info), memoryOf(filled<FailInfo>(0xFF)));
    EXPECT_THAT(
        logMessages(),
        ElementsAre("vx63_getFailinfo: usCode=0xFFFF, ucStat=255, ucCtl=255, usWait=-1, ucAddInfo[0]-[31]= "
                    "0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, "
                    "0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, 0XFF, "
                    "0XFF, 0XFF, 0XFF, 0XFF"));
}

TEST_F(DeviceInformationTest, FailinfoLogsTheWaitAsASignedNumber)
{
    const std::pair<const char*, const char*> cases[] = {
        {"00 00", "0"}, {"FF 7F", "32767"}, {"00 80", "-32768"}, {"FE FF", "-2"}};
    for (const auto& [bytes, text] : cases) {
        vx63test::removeLog();
        platform().expectSend(0, 10000, kFailRequest);
        platform().expectReceive(5, 10000,
                                 std::string("00 05 04 80 28 00 00 00 | 01 00 00 00 ") + bytes + " 00*34");
        FailInfo info = {};
        EXPECT_EQ(vx63_getFailinfo(&info), 0);
        EXPECT_THAT(logMessages(),
                    ElementsAre(testing::StartsWith(
                        std::string("vx63_getFailinfo: usCode=0x0001, ucStat=0, ucCtl=0, usWait=") + text +
                        ", ucAddInfo[0]-[31]= 00, 00, ")));
    }
}

TEST_F(DeviceInformationTest, FailinfoOfAShortBodyIsZeroWhereItEnds)
{
    platform().expectSend(0, 10000, kFailRequest);
    platform().expectReceive(5, 10000, "00 05 04 80 03 00 00 00 | 02 00 07 FF FF");
    FailInfo info = filled<FailInfo>(0x5A);
    EXPECT_EQ(vx63_getFailinfo(&info), 0);
    EXPECT_EQ(info.usCode, 2);
    EXPECT_EQ(info.ucStat, 7);
    EXPECT_EQ(info.ucCtl, 0);
    EXPECT_EQ(info.usWait, 0);
    EXPECT_EQ(info.ucAddInfo[0], 0);
    EXPECT_EQ(info.ucAddInfo[31], 0);
}

TEST_F(DeviceInformationTest, FailinfoRefusesANullPointer)
{
    EXPECT_EQ(vx63_getFailinfo(nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getFailinfo: arg error. pFail=(nil)"));
}

TEST_F(DeviceInformationTest, FailinfoLeavesTheRecordWhenTheExchangeFails)
{
    platform().expectSend(0, 10000, kFailRequest);
    platform().expectReceiveFails(5, 10000, -4);
    FailInfo info = filled<FailInfo>(0x5A);
    EXPECT_EQ(vx63_getFailinfo(&info), -1);
    EXPECT_EQ(memoryOf(info), memoryOf(filled<FailInfo>(0x5A)));
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                            "vx63_getFailinfo: PROC_ID_PSYS communication error. vx63_err=-1"));
}

// ---- vx63_getKeyStatus: a log file of its own ----

constexpr char kKeyRequest[] = "05 08 08 00 04 00 00 00 | 00 00 00 00";

KeyStatus numberedKeys()
{
    KeyStatus keys;
    for (int i = 0; i < 17; ++i) {
        keys.stat[i] = 100 + i;
    }
    keys.stat[1] = -1;
    keys.stat[2] = INT32_MIN;
    return keys;
}

TEST_F(DeviceInformationTest, KeyStatusWidensSeventeenBytesAndLogsNothing)
{
    platform().expectSend(8, 10000, kKeyRequest);
    platform().expectReceive(5, 10000,
                             "08 05 08 80 12 00 00 00 |"
                             "00 01 02 7F 80 FF 06 07 08 09 0A 0B 0C 0D 0E 0F 10 | EE");
    struct {
        KeyStatus keys;
        int32_t after;
    } memory = {filled<KeyStatus>(0x5A), 77};
    EXPECT_EQ(vx63_getKeyStatus(&memory.keys), 0);
    EXPECT_THAT(memory.keys.stat,
                ElementsAre(0, 1, 2, 127, 128, 255, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16));
    EXPECT_EQ(memory.after, 77);
    EXPECT_FALSE(std::filesystem::exists(vx63test::kLogPath));
    EXPECT_FALSE(std::filesystem::exists(kKeyLogPath));
}

TEST_F(DeviceInformationTest, KeyStatusOfAShortBodyIsZeroWhereItEnds)
{
    platform().expectSend(8, 10000, kKeyRequest);
    platform().expectReceive(5, 10000, "08 05 08 80 02 00 00 00 | 01 02 03");
    KeyStatus keys = filled<KeyStatus>(0x5A);
    EXPECT_EQ(vx63_getKeyStatus(&keys), 0);
    EXPECT_THAT(keys.stat, ElementsAre(1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST_F(DeviceInformationTest, KeyStatusRefusesANullPointer)
{
    EXPECT_EQ(vx63_getKeyStatus(nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getKeyStatus: arg error. pKeyStat=(nil)"));
    EXPECT_FALSE(std::filesystem::exists(kKeyLogPath));
}

TEST_F(DeviceInformationTest, KeyStatusLogsTheRecordAsItIsWhenTheExchangeFails)
{
    platform().expectSend(8, 10000, kKeyRequest);
    platform().expectReceiveFails(5, 10000, -4);
    KeyStatus keys = numberedKeys();
    EXPECT_EQ(vx63_getKeyStatus(&keys), -1);
    EXPECT_EQ(memoryOf(keys), memoryOf(numberedKeys()));
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                            "vx63_getKeyStatus: PROC_ID_PKEY communication error. vx63_err=-1"));
    EXPECT_THAT(
        logMessages(kKeyLogPath),
        ElementsAre("vx63_getKeyStatus: pKeyStat->stat[0]=100", "vx63_getKeyStatus: pKeyStat->stat[1]=-1",
                    "vx63_getKeyStatus: pKeyStat->stat[2]=-2147483648",
                    "vx63_getKeyStatus: pKeyStat->stat[3]=103", "vx63_getKeyStatus: pKeyStat->stat[4]=104",
                    "vx63_getKeyStatus: pKeyStat->stat[5]=105", "vx63_getKeyStatus: pKeyStat->stat[6]=106",
                    "vx63_getKeyStatus: pKeyStat->stat[7]=107", "vx63_getKeyStatus: pKeyStat->stat[8]=108",
                    "vx63_getKeyStatus: pKeyStat->stat[9]=109", "vx63_getKeyStatus: pKeyStat->stat[10]=110",
                    "vx63_getKeyStatus: pKeyStat->stat[11]=111", "vx63_getKeyStatus: pKeyStat->stat[12]=112",
                    "vx63_getKeyStatus: pKeyStat->stat[13]=113", "vx63_getKeyStatus: pKeyStat->stat[14]=114",
                    "vx63_getKeyStatus: pKeyStat->stat[15]=115",
                    "vx63_getKeyStatus: pKeyStat->stat[16]=116"));
    EXPECT_STREQ(g_cLibTestLogFilePath, "/var/log/libvx63.cpp.txt");
}

TEST_F(DeviceInformationTest, KeyStatusFailsTheSameWithoutItsLog)
{
    std::filesystem::create_directory(kKeyLogPath);
    platform().expectSend(8, 10000, kKeyRequest, -4);
    KeyStatus keys = numberedKeys();
    EXPECT_EQ(vx63_getKeyStatus(&keys), -1);
    EXPECT_EQ(memoryOf(keys), memoryOf(numberedKeys()));
    EXPECT_TRUE(std::filesystem::is_empty(kKeyLogPath));
    vx63test::removeLog();
}

// ---- vx63_getDeviceStatus ----

constexpr char kStatusRequest[] = "05 06 06 00 04 00 00 00 | 00 00 00 00";

TEST_F(DeviceInformationTest, DeviceStatusIsCopiedInTheRecordsOrderAndNotLogged)
{
    platform().expectSend(6, 10000, kStatusRequest);
    platform().expectReceive(5, 10000, "06 05 06 80 0A 00 00 00 | 01 F0 02 F3 04 F5 06 EE 08 F8");
    DeviceStatus status = filled<DeviceStatus>(0x5A);
    EXPECT_EQ(vx63_getDeviceStatus(&status), 0);
    EXPECT_EQ(status.usStat0, 0xF001);
    EXPECT_EQ(status.ucStat2, 0x02);
    EXPECT_EQ(status.ucStat6, 0x06);
    EXPECT_EQ(status.ulStat3, 0xF3u);
    EXPECT_EQ(status.ulStat4, 0x04u);
    EXPECT_EQ(status.ulStat5, 0xF5u);
    EXPECT_EQ(status.usStat8, 0xF808);

    // The places of the fields in memory.
    std::vector<uint8_t> memory = memoryOf(status);
    memory.resize(18);
    EXPECT_THAT(memory,
                ElementsAre(0x01, 0xF0, 0x02, 0x06, 0xF3, 0, 0, 0, 0x04, 0, 0, 0, 0xF5, 0, 0, 0, 0x08, 0xF8));
    EXPECT_THAT(logMessages(), IsEmpty());
}

TEST_F(DeviceInformationTest, DeviceStatusOfAShortBodyIsZeroWhereItEnds)
{
    platform().expectSend(6, 10000, kStatusRequest);
    platform().expectReceive(5, 10000, "06 05 06 80 03 00 00 00 | 01 00 02 EE EE EE EE");
    DeviceStatus status = filled<DeviceStatus>(0x5A);
    EXPECT_EQ(vx63_getDeviceStatus(&status), 0);
    EXPECT_EQ(status.usStat0, 1);
    EXPECT_EQ(status.ucStat2, 2);
    EXPECT_EQ(status.ucStat6, 0);
    EXPECT_EQ(status.ulStat3, 0u);
    EXPECT_EQ(status.ulStat5, 0u);
    EXPECT_EQ(status.usStat8, 0);
}

TEST_F(DeviceInformationTest, DeviceStatusRefusesANullPointer)
{
    EXPECT_EQ(vx63_getDeviceStatus(nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_getDeviceStatus: arg error. pDevStat=(nil)"));
}

TEST_F(DeviceInformationTest, DeviceStatusLeavesTheRecordWhenTheExchangeFails)
{
    platform().expectSend(6, 10000, kStatusRequest, -1);
    DeviceStatus status = filled<DeviceStatus>(0x5A);
    EXPECT_EQ(vx63_getDeviceStatus(&status), -1);
    EXPECT_EQ(memoryOf(status), memoryOf(filled<DeviceStatus>(0x5A)));
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_sndRcvCommon: lmsg_tsndMq() error. lmsg_err=-1",
                            "vx63_getDeviceStatus: PROC_ID_PDEV communication error. vx63_err=-1"));
}

// ---- vx63_setFailStat ----

constexpr uint8_t kAddInfo[32] = {0x41, 0x00, 0x43, 0x44, 0x45, 0x46, 0x47, 0x48, 0x49, 0x4A, 0x4B,
                                  0x4C, 0x4D, 0x4E, 0x4F, 0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56,
                                  0x57, 0x58, 0x59, 0x5A, 0x5B, 0x5C, 0x5D, 0x5E, 0x5F, 0xFF};

// The request that sets the state of failure 0xAB12, with kAddInfo.
std::string setFailRequest(int ucStat)
{
    return "05 00 11 00 24 00 00 00 | 12 AB " + hexByte(ucStat) +
           " 00 | 41 00 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F 50 51 52 53 54 55 56 57 58 59 5A 5B 5C 5D 5E "
           "5F FF";
}

TEST_F(DeviceInformationTest, SetFailStatSendsTheStateAndTheInformation)
{
    for (const int ucStat : {0, 1}) {
        vx63test::removeLog();
        platform().expectSend(0, 10000, setFailRequest(ucStat));
        platform().expectReceive(5, 10000, "00 05 11 80 04 00 00 00 | 00 00 00 00");
        EXPECT_EQ(vx63_setFailStat(0xAB12, static_cast<uint8_t>(ucStat), kAddInfo), 0);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_setFailStat: usCode=0xAB12, ucStat=" + std::to_string(ucStat)));
    }
}

TEST_F(DeviceInformationTest, SetFailStatDoesNotExamineTheAnswer)
{
    for (const char* body : {"04 00 00 00 | 02 00 00 00", "04 00 00 00 | FF FF FF FF", "00 00 00 00"}) {
        platform().expectSend(0, 10000, setFailRequest(1));
        platform().expectReceive(5, 10000, std::string("00 05 11 80 ") + body);
        EXPECT_EQ(vx63_setFailStat(0xAB12, 1, kAddInfo), 0);
    }
}

TEST_F(DeviceInformationTest, SetFailStatRefusesWhatIsNoState)
{
    for (const int ucStat : {2, 127, 128, 255}) {
        vx63test::removeLog();
        EXPECT_EQ(vx63_setFailStat(0xAB12, static_cast<uint8_t>(ucStat), kAddInfo), -2);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_setFailStat: arg error. ucStat=" + std::to_string(ucStat)));
    }
}

TEST_F(DeviceInformationTest, SetFailStatRefusesANullPointer)
{
    EXPECT_EQ(vx63_setFailStat(0xAB12, 1, nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_setFailStat: arg error. ucAddInfo=(nil)"));

    // The state is checked before.
    vx63test::removeLog();
    EXPECT_EQ(vx63_setFailStat(0xAB12, 2, nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_setFailStat: arg error. ucStat=2"));
}

TEST_F(DeviceInformationTest, SetFailStatNamesTheSystemServiceWhenTheExchangeFails)
{
    platform().expectSend(0, 10000, setFailRequest(1));
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_setFailStat(0xAB12, 1, kAddInfo), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_setFailStat: usCode=0xAB12, ucStat=1",
                            "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                            "vx63_setFailStat: PROC_ID_PSYS communication error. vx63_err=-1"));
}

} // namespace

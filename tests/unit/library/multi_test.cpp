// The multi-channel measurement and the channel scan.
#include "support/bytes.h"
#include "support/operation_test.h"

#include <sys/mman.h>
#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using vx63test::filled;
using vx63test::hex16;
using vx63test::hex32;
using vx63test::hexByte;
using vx63test::logMessages;
using vx63test::platform;
using vx63test::pointerText;
using vx63test::same;

using MultiTest = vx63test::OperationTest;

// "CH000012"
std::string channelName(size_t i)
{
    const std::string number = std::to_string(i);
    return "CH" + std::string(6 - number.size(), '0') + number;
}

// A registration that ends where memory ends: whoever reads a channel too far crashes.
class Registration {
public:
    explicit Registration(int16_t sRegNum) : Registration(sRegNum, sRegNum < 0 ? 0 : size_t(sRegNum)) {}

    Registration(int16_t sRegNum, size_t channels)
    {
        const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        const size_t length = sizeof(MultiMeasReg) + channels * sizeof(MeasCondition);
        const size_t room = (length + page - 1) / page * page;
        m_size = room + page;
        m_memory = mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        EXPECT_NE(m_memory, MAP_FAILED);
        auto* const first = static_cast<uint8_t*>(m_memory);
        EXPECT_EQ(mprotect(first + room, page, PROT_NONE), 0);
        m_reg = reinterpret_cast<MultiMeasReg*>(first + room - length);
        m_reg->sRegNum = sRegNum;
        for (size_t i = 0; i < channels; ++i) {
            MeasCondition& single = m_reg->single[i];
            single.ulFreq = 0x10000000 + static_cast<uint32_t>(i);
            single.ulLoFreq = 0x20000000 + static_cast<uint32_t>(i);
            single.usBdSys = static_cast<uint16_t>(0x3000 + i);
            single.usBand = static_cast<uint16_t>(0x4000 + i);
            single.usMod = static_cast<uint16_t>(0x5000 + i);
            single.usCondition = static_cast<uint16_t>(0x6000 + i);
            memcpy(single.ucStrChan, channelName(i).data(), 8);
            single.ucOutputEnb = static_cast<uint8_t>(i);
            single.powerSupply = static_cast<int32_t>(i % 5);
        }
    }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration() { munmap(m_memory, m_size); }

    const MultiMeasReg* get() const { return m_reg; }
    MultiMeasReg* operator->() { return m_reg; }

private:
    void* m_memory;
    size_t m_size;
    MultiMeasReg* m_reg;
};

// The 32 bytes of channel i of a Registration.
std::string channelEntry(unsigned i)
{
    static const char* const supplies[] = {"00 00", "01 00", "02 00", "01 01", "02 01"};
    const std::string name = channelName(i);
    std::string entry = hex32(0x10000000 + i) + " " + hex32(0x20000000 + i) + " " + hex16(0x3000 + i) + " " +
                        hex16(0x4000 + i) + " " + hex16(0x5000 + i) + " " + hex16(0x6000 + i) + " ";
    for (const char letter : name) {
        entry += hexByte(static_cast<unsigned>(letter)) + " ";
    }
    return entry + hexByte(i) + " " + supplies[i % 5] + " 00 00 00 00 00 | ";
}

// A part for display type 6 with the entries of these channels, and zeros behind them.
std::string part(unsigned kind, unsigned regIdx, unsigned regCount, const std::vector<unsigned>& channels)
{
    std::string message = "05 0C 09 01 0C 05 00 00 | 06 00 00 00 | " + hexByte(kind) + " 00 00 00 | " +
                          hexByte(regIdx) + " 00 " + hexByte(regCount) + " 00 | ";
    for (const unsigned channel : channels) {
        message += channelEntry(channel);
    }
    if (channels.size() < 40) {
        message += "00*" + std::to_string(32 * (40 - channels.size()));
    }
    return message;
}

// Channels first, first + 1, ... of them, as indices of 8 bits.
std::vector<unsigned> range(unsigned first, unsigned count)
{
    std::vector<unsigned> channels;
    for (unsigned i = first; i < first + count; ++i) {
        channels.push_back(i % 256);
    }
    return channels;
}

void expectPart(const std::string& message, const std::string& ucRet = "00")
{
    platform().expectSend(12, 10000, message);
    platform().expectReceive(5, 10000, "0C 05 09 81 04 00 00 00 | " + ucRet + " 00 00 00");
}

std::string singleLine(unsigned i)
{
    char line[256];
    snprintf(line, sizeof line,
             "vx63_startMultiMeasCommon: single[%u] : ulFreq=%u, ulLoFreq=%u, usBdSys=%u, usBand=%u, "
             "usMod=0x5%03X, usCondition=0x6%03X, ucStrChan=[CH%06u], ucOutputEnb=%u, powerSupply=%u",
             i, 268435456 + i, 536870912 + i, 12288 + i, 16384 + i, i, i, i, i % 256, i % 5);
    return line;
}

// ---- vx63_startMultiMeas ----

TEST_F(MultiTest, StartSendsOnePartOfUpTo40Channels)
{
    for (const int16_t count : std::initializer_list<int16_t>{1, 2, 39, 40}) {
        vx63test::removeLog();
        const auto channels = static_cast<unsigned>(count);
        expectPart(part(1, 0, channels, range(0, channels)));
        Registration reg(count);
        EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), 0);

        const std::string number = std::to_string(count);
        std::vector<std::string> expected = {"vx63_startMultiMeas: Start.",
                                             "vx63_startMultiMeasCommon: Start. reqSize=1292 rspSize=4",
                                             "vx63_startMultiMeasCommon: sRegNum=" + number};
        for (unsigned i = 0; i < channels; ++i) {
            expected.push_back(singleLine(i));
        }
        expected.push_back("vx63_startMultiMeasCommon: reqData.ucDispType=6");
        expected.push_back("vx63_startMultiMeasCommon: split(1/1) ucRegIdx=0 ucRegCount=" + number);
        for (unsigned i = 0; i < channels; ++i) {
            expected.push_back("vx63_startMultiMeasCommon: split(1/1) " + std::to_string(i + 1) + "/" +
                               number + " ucRegIdx=" + std::to_string(i));
        }
        expected.push_back("vx63_startMultiMeas: End. vx63_err=0");
        EXPECT_THAT(logMessages(), ElementsAreArray(expected));
    }
}

TEST_F(MultiTest, StartLeavesTheEntriesOfThePartBeforeBehindAShortLastOne)
{
    expectPart(part(3, 0, 40, range(0, 40)));
    std::vector<unsigned> left = range(0, 40);
    left[0] = 40;
    expectPart(part(1, 40, 1, left));
    Registration reg(41);
    EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), 0);

    const std::vector<std::string> messages = logMessages();
    ASSERT_EQ(messages.size(), 3u + 41 + 1 + 41 + 41 - 40 + 1 + 1);
    EXPECT_EQ(messages[2], "vx63_startMultiMeasCommon: sRegNum=41");
    EXPECT_EQ(messages[43], singleLine(40));
    EXPECT_EQ(messages[44], "vx63_startMultiMeasCommon: reqData.ucDispType=6");
    EXPECT_EQ(messages[45], "vx63_startMultiMeasCommon: split(1/2) ucRegIdx=0 ucRegCount=40");
    EXPECT_EQ(messages[46], "vx63_startMultiMeasCommon: split(1/2) 1/40 ucRegIdx=0");
    EXPECT_EQ(messages[85], "vx63_startMultiMeasCommon: split(1/2) 40/40 ucRegIdx=39");
    EXPECT_EQ(messages[86], "vx63_startMultiMeasCommon: split(2/2) ucRegIdx=40 ucRegCount=1");
    EXPECT_EQ(messages[87], "vx63_startMultiMeasCommon: split(2/2) 1/1 ucRegIdx=40");
    EXPECT_EQ(messages[88], "vx63_startMultiMeas: End. vx63_err=0");
}

TEST_F(MultiTest, StartSendsOneEmptyPartForNoChannels)
{
    expectPart(part(1, 0, 0, {}));
    Registration reg(0);
    EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), 0);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_startMultiMeas: Start.",
                                           "vx63_startMultiMeasCommon: Start. reqSize=1292 rspSize=4",
                                           "vx63_startMultiMeasCommon: sRegNum=0",
                                           "vx63_startMultiMeasCommon: reqData.ucDispType=6",
                                           "vx63_startMultiMeasCommon: split(1/1) ucRegIdx=0 ucRegCount=0",
                                           "vx63_startMultiMeas: End. vx63_err=0"));
}

TEST_F(MultiTest, StartWrapsTheIndexAt256)
{
    for (unsigned regIdx = 0; regIdx < 240; regIdx += 40) {
        expectPart(part(3, regIdx, 40, range(regIdx, 40)));
    }
    expectPart(part(3, 240, 40, range(240, 40))); // 240 to 255, then 0 to 23
    std::vector<unsigned> last = range(240, 40);
    for (unsigned k = 0; k < 20; ++k) {
        last[k] = 24 + k;
    }
    expectPart(part(1, 24, 20, last));
    Registration reg(300);
    EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), 0);

    const std::vector<std::string> messages = logMessages();
    ASSERT_EQ(messages.size(), 3u + 300 + 1 + 8 + 300 + 1);
    EXPECT_EQ(messages[302], singleLine(299)); // the log shows every channel once
    EXPECT_EQ(messages[304 + 6 * 41], "vx63_startMultiMeasCommon: split(7/8) ucRegIdx=240 ucRegCount=40");
    EXPECT_EQ(messages[304 + 6 * 41 + 16], "vx63_startMultiMeasCommon: split(7/8) 16/40 ucRegIdx=255");
    EXPECT_EQ(messages[304 + 6 * 41 + 17], "vx63_startMultiMeasCommon: split(7/8) 17/40 ucRegIdx=0");
    EXPECT_EQ(messages[304 + 7 * 41], "vx63_startMultiMeasCommon: split(8/8) ucRegIdx=24 ucRegCount=20");
    EXPECT_EQ(messages[304 + 7 * 41 + 20], "vx63_startMultiMeasCommon: split(8/8) 20/20 ucRegIdx=43");
}

TEST_F(MultiTest, StartRegisters256ChannelsOnce)
{
    for (unsigned regIdx = 0; regIdx < 240; regIdx += 40) {
        expectPart(part(3, regIdx, 40, range(regIdx, 40)));
    }
    std::vector<unsigned> last = range(200, 40);
    for (unsigned k = 0; k < 16; ++k) {
        last[k] = 240 + k;
    }
    expectPart(part(1, 240, 16, last));
    Registration reg(256);
    EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), 0);
}

TEST_F(MultiTest, StartTakesAsManyChannelsAsTheNumberHolds)
{
    // 32767 = 819 * 40 + 7. The index of the last part is 819 * 40 mod 256 = 248.
    for (unsigned p = 0; p < 819; ++p) {
        expectPart(part(3, p * 40 % 256, 40, range(p * 40 % 256, 40)));
    }
    std::vector<unsigned> last = range(818 * 40 % 256, 40);
    for (unsigned k = 0; k < 7; ++k) {
        last[k] = 248 + k;
    }
    expectPart(part(1, 248, 7, last));
    Registration reg(32767);
    EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), 0);
}

TEST_F(MultiTest, StartTakesASupplyOutOfRangeForOff)
{
    for (const int32_t supply : {5, -1, INT32_MAX, INT32_MIN}) {
        vx63test::removeLog();
        std::string message = part(1, 0, 2, {0, 1});
        const std::string first = channelEntry(1); // its supply is 01 00
        std::string off = first;
        off.replace(off.find("01 01 00 00 00 00 00 00"), 23, "01 00 00 00 00 00 00 00");
        message.replace(message.find(first), first.size(), off);
        expectPart(message);
        Registration reg(2);
        reg->single[1].powerSupply = supply;
        EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), 0);
        EXPECT_EQ(reg->single[1].powerSupply, supply);
        const std::string number = std::to_string(supply);
        const std::vector<std::string> messages = logMessages();
        ASSERT_EQ(messages.size(), 11u);
        EXPECT_EQ(messages[4].substr(messages[4].rfind(' ')), " powerSupply=" + number);
        EXPECT_EQ(messages[7], "vx63_startMultiMeasCommon: split(1/1) 1/2 ucRegIdx=0");
        EXPECT_EQ(messages[8], "vx63_startMultiMeasCommon: arg error. powerSupply=" + number +
                                   " -> VX63_POWER_SUPPLY_OFF");
        EXPECT_EQ(messages[9], "vx63_startMultiMeasCommon: split(1/1) 2/2 ucRegIdx=1");
    }
}

TEST_F(MultiTest, StartRefusesANullPointer)
{
    EXPECT_EQ(vx63_startMultiMeas(6, nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_startMultiMeas: Start.",
                                           "vx63_startMultiMeasCommon: Start. reqSize=1292 rspSize=4",
                                           "vx63_startMultiMeasCommon: arg error. pReg=(nil)",
                                           "vx63_startMultiMeas: End. vx63_err=-2"));
}

TEST_F(MultiTest, StartRefusesAPartOfMoreChannelsThanItHolds)
{
    for (const int16_t count : std::initializer_list<int16_t>{-1, -2, -20, -37, -38}) {
        vx63test::removeLog();
        Registration reg(count);
        EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), -2);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_startMultiMeas: Start.",
                                "vx63_startMultiMeasCommon: Start. reqSize=1292 rspSize=4",
                                "vx63_startMultiMeasCommon: sRegNum=" + std::to_string(4294967296 + count),
                                "vx63_startMultiMeasCommon: reqData.ucDispType=6",
                                "vx63_startMultiMeasCommon: arg error. sRegNum=" + std::to_string(count),
                                "vx63_startMultiMeas: End. vx63_err=-2"));
    }
}

TEST_F(MultiTest, StartSendsNothingFromMinus39Down)
{
    const std::pair<int16_t, const char*> cases[] = {
        {int16_t{-39}, "4294967257"}, {int16_t{-40}, "4294967256"}, {INT16_MIN, "4294934528"}};
    for (const auto& [count, shown] : cases) {
        vx63test::removeLog();
        Registration reg(count);
        EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), -1);
        EXPECT_THAT(logMessages(), ElementsAre("vx63_startMultiMeas: Start.",
                                               "vx63_startMultiMeasCommon: Start. reqSize=1292 rspSize=4",
                                               std::string("vx63_startMultiMeasCommon: sRegNum=") + shown,
                                               "vx63_startMultiMeasCommon: reqData.ucDispType=6",
                                               "vx63_startMultiMeas: End. vx63_err=-1"));
    }
}

TEST_F(MultiTest, StartJudgesUcRetOfAPart)
{
    Registration reg(41);
    std::vector<unsigned> left = range(0, 40);
    left[0] = 40;
    for (unsigned ucRet = 0; ucRet < 256; ++ucRet) {
        if (ucRet == 0 || ucRet == 7) { // both go on, in any part
            expectPart(part(3, 0, 40, range(0, 40)), hexByte(ucRet));
            expectPart(part(1, 40, 1, left), hexByte(ucRet));
            EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), 0) << ucRet;
            continue;
        }
        // The first part refused: nothing follows, no stop either.
        vx63test::removeLog();
        expectPart(part(3, 0, 40, range(0, 40)), hexByte(ucRet));
        const int32_t expected = ucRet == 2 ? -2 : -1;
        EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), expected) << ucRet;
        const std::vector<std::string> messages = logMessages();
        ASSERT_EQ(messages.size(), 3u + 41 + 1 + 41 + 2);
        EXPECT_EQ(messages[86], std::string("vx63_startMultiMeasCommon: ") +
                                    (ucRet == 2 ? "parameter error. vx63_err=-2" : "ret error. vx63_err=-1"));
        EXPECT_EQ(messages[87], "vx63_startMultiMeas: End. vx63_err=" + std::to_string(expected));
    }
    expectPart(part(3, 0, 40, range(0, 40)));
    expectPart(part(1, 40, 1, left), "02");
    EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), -2);
}

TEST_F(MultiTest, StartEndsWithThePartWhoseExchangeFails)
{
    Registration reg(100);
    expectPart(part(3, 0, 40, range(0, 40)));
    platform().expectSend(12, 10000, part(3, 40, 40, range(40, 40)));
    platform().expectReceiveFails(5, 10000, -4);
    EXPECT_EQ(vx63_startMultiMeas(6, reg.get()), -1);
    const std::vector<std::string> messages = logMessages();
    ASSERT_EQ(messages.size(), 3u + 100 + 1 + 82 + 3);
    EXPECT_EQ(messages[186], "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4");
    EXPECT_EQ(messages[187], "vx63_startMultiMeasCommon: subcpu communication error. vx63_err=-1");
    EXPECT_EQ(messages[188], "vx63_startMultiMeas: End. vx63_err=-1");
}

// ---- vx63_startScan: the last part says so, everything else is the same ----

TEST_F(MultiTest, ScanSaysSoInItsLastPart)
{
    expectPart(part(3, 0, 40, range(0, 40)));
    std::vector<unsigned> left = range(0, 40);
    left[0] = 40;
    expectPart(part(2, 40, 1, left), "07");
    Registration reg(41);
    EXPECT_EQ(vx63_startScan(6, reg.get()), 0);
    const std::vector<std::string> messages = logMessages();
    EXPECT_EQ(messages[0], "vx63_startScan: Start.");
    EXPECT_EQ(messages[1], "vx63_startMultiMeasCommon: Start. reqSize=1292 rspSize=4");
    EXPECT_EQ(messages.back(), "vx63_startScan: End. vx63_err=0");

    expectPart(part(2, 0, 1, {0}), "02");
    Registration one(1);
    EXPECT_EQ(vx63_startScan(6, one.get()), -2);
    expectPart(part(2, 0, 0, {}), "03");
    Registration none(0);
    EXPECT_EQ(vx63_startScan(6, none.get()), -1);
}

TEST_F(MultiTest, ScanRefusesWhatAStartRefuses)
{
    EXPECT_EQ(vx63_startScan(6, nullptr), -2);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_startScan: Start.",
                                           "vx63_startMultiMeasCommon: Start. reqSize=1292 rspSize=4",
                                           "vx63_startMultiMeasCommon: arg error. pReg=(nil)",
                                           "vx63_startScan: End. vx63_err=-2"));
    Registration tooFew(-38);
    EXPECT_EQ(vx63_startScan(6, tooFew.get()), -2);
    Registration farTooFew(-39);
    EXPECT_EQ(vx63_startScan(6, farTooFew.get()), -1);
}

// ---- vx63_setMultiMeasChannel ----

TEST_F(MultiTest, SetChannelDoesNothingAtAll)
{
    EXPECT_EQ(vx63_setMultiMeasChannel(), 0);
    EXPECT_TRUE(logMessages().empty());
}

// ---- vx63_getMultiMeasResult, vx63_getScanResult ----

struct Read {
    std::string name;
    int32_t (*call)(int32_t, MultiMeasResult*);
};
const Read kReads[] = {{"vx63_getMultiMeasResult", vx63_getMultiMeasResult},
                       {"vx63_getScanResult", vx63_getScanResult}};

std::string resultRequest(const std::string& index)
{
    return "05 0C 0B 01 0C 00 00 00 | 00*8 | " + index + " 00 00";
}

// A result with this ucRet, whose every byte tells where it goes.
std::string resultResponse(const std::string& ucRet)
{
    return "0C 05 0B 81 28 00 00 00 | " + ucRet +
           " E1 E2 E3 | A4 E5 E6 E7 | 08 A8 0A AA 0C 0D 0E AE | 10 20 30 40 14 24 34 44 18 28 38 48 1C 2C 3C "
           "4C | 20 A0 A2 A3 | 24 54 64 74";
}

TEST_F(MultiTest, ResultIsCopiedAndLogged)
{
    for (const auto& [name, read] : kReads) {
        for (const char* ucRet : {"00", "07"}) {
            vx63test::removeLog();
            platform().expectSend(12, 10000, resultRequest("03 00"));
            platform().expectReceive(5, 10000, resultResponse(ucRet));
            auto result = filled<MultiMeasResult>(0x5A);
            EXPECT_EQ(read(3, &result), 0);

            EXPECT_EQ(result.lock, 0xA4);
            EXPECT_EQ(result.stat, 0xA808);
            EXPECT_EQ(result.mesCond, 0xAA0A);
            EXPECT_EQ(result.readIdx, 0x0C);
            EXPECT_EQ(result.currIdx, 0x0D);
            EXPECT_EQ(result.bdSys, 0xAE0E);
            EXPECT_EQ(result.LEVEL, 0x40302010u);
            EXPECT_EQ(result.CNR, 0x44342414u);
            EXPECT_EQ(result.BER_TOTAL, 0x48382818u);
            EXPECT_EQ(result.BER_ERR, 0x4C3C2C1Cu);
            EXPECT_EQ(result.TSID, 0xA020);
            EXPECT_EQ(result.GI, 0xA2);
            EXPECT_EQ(result.LAYER, 0xA3);
            EXPECT_EQ(result.MOD, 0x74645424u);

            // In the log, GI and TSID have changed places.
            EXPECT_THAT(logMessages(),
                        ElementsAre(name + ": Start.", name + ": sIndex=3 pResult=" + pointerText(&result),
                                    name +
                                        ": lock=A4 stat=A808 mesCond=AA0A readIdx=12 currIdx=13 bdSys=AE0E "
                                        "LEVEL=1076895760 CNR=1144267796 BER_TOTAL=1211639832 "
                                        "BER_ERR=1279011868 TSID=00A2 GI=40992 LAYER=A3 MOD=74645424",
                                    name + ": End. vx63_err=0"));
        }
    }
}

TEST_F(MultiTest, ResultSendsTheLow16BitsOfTheIndex)
{
    const std::pair<int32_t, const char*> cases[] = {{0, "00 00"},         {255, "FF 00"},   {256, "00 01"},
                                                     {65535, "FF FF"},     {65536, "00 00"}, {70000, "70 11"},
                                                     {2147483647, "FF FF"}}; // 70000 - 65536 = 4464
    for (const auto& [name, read] : kReads) {
        for (const auto& [index, sent] : cases) {
            vx63test::removeLog();
            platform().expectSend(12, 10000, resultRequest(sent));
            platform().expectReceive(5, 10000, resultResponse("00"));
            MultiMeasResult result;
            EXPECT_EQ(read(index, &result), 0);
            EXPECT_EQ(logMessages().at(1),
                      name + ": sIndex=" + std::to_string(index) + " pResult=" + pointerText(&result));
        }
    }
}

TEST_F(MultiTest, ResultRefusesANullPointerBeforeANegativeIndex)
{
    for (const auto& [name, read] : kReads) {
        for (const int32_t index : {0, -1}) {
            vx63test::removeLog();
            EXPECT_EQ(read(index, nullptr), -2);
            EXPECT_THAT(logMessages(),
                        ElementsAre(name + ": Start.",
                                    name + ": sIndex=" + std::to_string(index) + " pResult=(nil)",
                                    name + ": arg error. pResult=(nil)", name + ": End. vx63_err=-2"));
        }
    }
}

TEST_F(MultiTest, ResultRefusesANegativeIndex)
{
    const auto before = filled<MultiMeasResult>(0x5A);
    for (const auto& [name, read] : kReads) {
        for (const int32_t index : {-1, INT32_MIN}) {
            vx63test::removeLog();
            auto result = filled<MultiMeasResult>(0x5A);
            EXPECT_EQ(read(index, &result), -2);
            EXPECT_TRUE(same(result, before));
            const std::string number = std::to_string(index);
            EXPECT_THAT(logMessages(),
                        ElementsAre(name + ": Start.",
                                    name + ": sIndex=" + number + " pResult=" + pointerText(&result),
                                    name + ": arg error. sIndex=" + number, name + ": End. vx63_err=-2"));
        }
    }
}

TEST_F(MultiTest, ResultJudgesUcRetAndLeavesTheRecordOnFailure)
{
    const auto before = filled<MultiMeasResult>(0x5A);
    for (const auto& [name, read] : kReads) {
        for (unsigned ucRet = 0; ucRet < 256; ++ucRet) {
            if (ucRet == 0 || ucRet == 7) {
                continue;
            }
            vx63test::removeLog();
            platform().expectSend(12, 10000, resultRequest("00 00"));
            platform().expectReceive(5, 10000, resultResponse(hexByte(ucRet)));
            auto result = filled<MultiMeasResult>(0x5A);
            const int32_t expected = ucRet == 2 ? -2 : ucRet == 3 ? -7 : -1;
            const std::string message = ucRet == 2   ? ": parameter error. vx63_err=-2"
                                        : ucRet == 3 ? ": power supply error. vx63_err=-7"
                                                     : ": ret error. vx63_err=-1";
            EXPECT_EQ(read(0, &result), expected) << ucRet;
            EXPECT_TRUE(same(result, before)) << ucRet;
            EXPECT_THAT(logMessages(),
                        ElementsAre(name + ": Start.", name + ": sIndex=0 pResult=" + pointerText(&result),
                                    name + message, name + ": End. vx63_err=" + std::to_string(expected)));
        }
    }
}

TEST_F(MultiTest, ResultLeavesTheRecordWhenTheExchangeFails)
{
    const auto before = filled<MultiMeasResult>(0x5A);
    for (const auto& [name, read] : kReads) {
        vx63test::removeLog();
        platform().expectSend(12, 10000, resultRequest("00 00"));
        platform().expectReceiveFails(5, 10000, -4);
        auto result = filled<MultiMeasResult>(0x5A);
        EXPECT_EQ(read(0, &result), -1);
        EXPECT_TRUE(same(result, before));
        EXPECT_THAT(logMessages(),
                    ElementsAre(name + ": Start.", name + ": sIndex=0 pResult=" + pointerText(&result),
                                "vx63_sndRcvCommon: lmsgrcvMq() timeout error. lmsg_err=-4",
                                name + ": subcpu communication error. vx63_err=-1",
                                name + ": End. vx63_err=-1"));
    }
}

TEST_F(MultiTest, AShortResultIsZeroWhereItEnds)
{
    platform().expectSend(12, 10000, resultRequest("00 00"));
    platform().expectReceive(5, 10000, "0C 05 0B 81 06 00 00 00 | 00 00 00 00 01 EE");
    auto result = filled<MultiMeasResult>(0x5A);
    EXPECT_EQ(vx63_getMultiMeasResult(0, &result), 0);
    EXPECT_EQ(result.lock, 1);
    EXPECT_EQ(result.currIdx, 0);
    EXPECT_EQ(result.MOD, 0u);
}

} // namespace

#include "support/set_file_test.h"

#include <barrier>
#include <thread>

namespace {

using testing::ElementsAre;
using vx63test::logMessages;
using vx63test::lsys;
using vx63test::pattern;
using vx63test::pointerText;
using vx63test::setFile;

using WholeFileTest = vx63test::SetFileTest;

constexpr uint32_t kSets[] = {14, 35, 42, 44, 46, 48};
constexpr uint32_t kLists[] = {15, 36, 43, 45, 47, 49};

// "/usr/local/bin/user_set/" and ".csv" leave 99 characters of a 128-byte buffer.
const std::string kLongestUserName(99, 'n');

std::string readLine(int32_t id, const void* pDat, const std::string& name, uint32_t bDefault)
{
    return "vx63_readSetFile: fileId=" + std::to_string(id) + ", pDat=" + pointerText(pDat) +
           ", pcMeasFileName=[" + name + "], bDefault=" + std::to_string(bDefault);
}

std::string writeLine(int32_t id, const void* pDat, const std::string& name, uint32_t ulUserLine)
{
    return "vx63_writeSetFile: fileId=" + std::to_string(id) + ", pDat=" + pointerText(pDat) +
           ", pcMeasFileName=[" + name + "], ulUserLine=" + std::to_string(ulUserLine);
}

// ---- vx63_readSetFile ----

TEST_F(WholeFileTest, ReadDeliversTheFile)
{
    uint8_t dat[5] = {};
    lsys().expectRead(1, "", {9, 8, 7, 6, 5}, 1);
    EXPECT_EQ(vx63_readSetFile(1, dat, nullptr, 0), 1);
    EXPECT_THAT(dat, ElementsAre(9, 8, 7, 6, 5));
    EXPECT_THAT(logMessages(), ElementsAre("vx63_readSetFile: Start.", readLine(1, dat, "(null)", 0),
                                           "vx63_readSetFile: End. iRet=1"));
}

TEST_F(WholeFileTest, ReadRefusesWhatIsNoFile)
{
    uint8_t dat[1] = {0xEE};
    const std::pair<uint32_t, const char*> cases[] = {
        {50, "50"}, {51, "51"}, {0x7FFFFFFF, "2147483647"}, {UINT32_MAX, "-1"}};
    for (const auto& [id, text] : cases) {
        vx63test::removeLog();
        EXPECT_EQ(vx63_readSetFile(id, dat, "ABC", 0), -1);
        EXPECT_EQ(vx63_readSetFile(id, nullptr, nullptr, 1), -1); // the id is looked at first
        EXPECT_THAT(logMessages(), ElementsAre("vx63_readSetFile: Start.",
                                               std::string("vx63_readSetFile: arg error. fileId=") + text,
                                               "vx63_readSetFile: Start.",
                                               std::string("vx63_readSetFile: arg error. fileId=") + text));
    }
    EXPECT_EQ(dat[0], 0xEE);
}

TEST_F(WholeFileTest, ReadRefusesANullBuffer)
{
    for (const uint32_t id : {2u, 14u, 15u}) {
        vx63test::removeLog();
        EXPECT_EQ(vx63_readSetFile(id, nullptr, nullptr, 1), -1); // the buffer is looked at before the name
        EXPECT_THAT(logMessages(), ElementsAre("vx63_readSetFile: Start.",
                                               "vx63_readSetFile: arg null pointer error. pDat=(nil)"));
    }
}

TEST_F(WholeFileTest, ReadOfASetNeedsAName)
{
    uint8_t dat[1] = {0xEE};
    for (const uint32_t id : kSets) {
        vx63test::removeLog();
        EXPECT_EQ(vx63_readSetFile(id, dat, nullptr, 0), -1) << id;
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_readSetFile: Start.",
                                "vx63_readSetFile: arg null pointer error. pcMeasFileName=(nil)"));
    }
    EXPECT_EQ(dat[0], 0xEE);
}

TEST_F(WholeFileTest, ReadOfASetInsertsTheNameAndIgnoresTheDefaultFlag)
{
    std::vector<uint8_t> dat(324 * 28);
    for (const uint32_t id : kSets) {
        for (const char* name : {"ABC", "FM _1.2", "../x/%s%d", ""}) {
            vx63test::removeLog();
            lsys().expectRead(id, name, pattern(28), 1);
            EXPECT_EQ(vx63_readSetFile(id, dat.data(), name, 1), 1) << id;
            EXPECT_THAT(logMessages(), ElementsAre("vx63_readSetFile: Start.",
                                                   readLine(static_cast<int32_t>(id), dat.data(), name, 1),
                                                   "vx63_readSetFile: End. iRet=1"));
        }
    }
}

TEST_F(WholeFileTest, ReadOfAListNeedsNoNameAndIgnoresTheDefaultFlag)
{
    std::vector<uint8_t> dat(140 * 15);
    for (const uint32_t id : kLists) {
        for (const uint32_t bDefault : {0u, 1u}) {
            lsys().expectRead(id, "", pattern(2 * 15), 2);
            EXPECT_EQ(vx63_readSetFile(id, dat.data(), nullptr, bDefault), 2) << id;
        }
    }
}

TEST_F(WholeFileTest, ReadOfFactoryContentsOpensNoFile)
{
    for (const uint32_t bDefault : {1u, 2u, 0x100u, 0x80000000u, UINT32_MAX}) {
        vx63test::removeLog();
        uint8_t dat[5] = {0xEE, 0xEE, 0xEE, 0xEE, 0xEE};
        EXPECT_EQ(vx63_readSetFile(2, dat, nullptr, bDefault), 1);
        EXPECT_THAT(dat, ElementsAre(3, 2, 1, 2, 0xEE));
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_readSetFile: Start.", readLine(2, dat, "(null)", bDefault),
                                "vx63_readSetFile: End. iRet=1"));
    }
}

TEST_F(WholeFileTest, ReadPassesTheReadersResultThrough)
{
    std::vector<uint8_t> dat(40 * 12);
    for (const int32_t result : {0, 3, 40, -1, -2, -7, INT32_MIN}) {
        vx63test::removeLog();
        lsys().expectRead(16, "", {}, result);
        EXPECT_EQ(vx63_readSetFile(16, dat.data(), "ignored", 0), result);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_readSetFile: Start.", readLine(16, dat.data(), "ignored", 0),
                                "vx63_readSetFile: End. iRet=" + std::to_string(result)));
    }
}

TEST_F(WholeFileTest, ReadRefusesANameThatThePathBufferDoesNotHold)
{
    std::vector<uint8_t> dat(324 * 28, 0xEE);
    lsys().expectRead(14, kLongestUserName, {}, 0);
    EXPECT_EQ(vx63_readSetFile(14, dat.data(), kLongestUserName.c_str(), 0), 0);
    for (const size_t size : {size_t{100}, size_t{128}, size_t{5000}, size_t{1} << 20}) {
        vx63test::removeLog();
        const std::string name(size, 'n');
        EXPECT_EQ(vx63_readSetFile(14, dat.data(), name.c_str(), 0), -1);
        EXPECT_THAT(logMessages(), ElementsAre("vx63_readSetFile: Start.", readLine(14, dat.data(), name, 0),
                                               "vx63_readSetFile: arg error. pcMeasFileName=[" +
                                                   name.substr(0, 64) + "]..."));
    }
    EXPECT_EQ(dat, std::vector<uint8_t>(324 * 28, 0xEE));
    // "/usr/local/bin/logger_set_usb2/" is 7 longer.
    lsys().expectRead(48, std::string(92, 'n'), {}, 0);
    EXPECT_EQ(vx63_readSetFile(48, dat.data(), std::string(92, 'n').c_str(), 0), 0);
    EXPECT_EQ(vx63_readSetFile(48, dat.data(), std::string(93, 'n').c_str(), 0), -1);
    // Where the name is not used, any will do.
    lsys().expectRead(15, "", {}, 0);
    EXPECT_EQ(vx63_readSetFile(15, dat.data(), std::string(5000, 'n').c_str(), 0), 0);
}

// ---- vx63_writeSetFile ----

TEST_F(WholeFileTest, WriteRefusesWhatIsNoFile)
{
    const uint8_t dat[1] = {};
    EXPECT_EQ(vx63_writeSetFile(50, dat, "ABC", 0), -1);
    EXPECT_EQ(vx63_writeSetFile(UINT32_MAX, nullptr, nullptr, 999), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_writeSetFile: Start.", "vx63_writeSetFile: arg error. fileId=50",
                            "vx63_writeSetFile: Start.", "vx63_writeSetFile: arg error. fileId=-1"));
}

TEST_F(WholeFileTest, WriteRefusesANullBuffer)
{
    EXPECT_EQ(vx63_writeSetFile(14, nullptr, nullptr, 999), -1);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_writeSetFile: Start.",
                                           "vx63_writeSetFile: arg null pointer error. pDat=(nil)"));
}

TEST_F(WholeFileTest, WriteOfASetNeedsAName)
{
    const uint8_t dat[1] = {};
    for (const uint32_t id : kSets) {
        vx63test::removeLog();
        EXPECT_EQ(vx63_writeSetFile(id, dat, nullptr, 999), -1) << id; // before the range
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_writeSetFile: Start.",
                                "vx63_writeSetFile: arg null pointer error. pcMeasFileName=(nil)"));
    }
}

TEST_F(WholeFileTest, WriteToASetOrListIsBoundedByItsRows)
{
    for (const uint32_t id : {14u, 35u, 42u, 44u, 46u, 48u, 15u, 36u, 43u, 45u, 47u, 49u}) {
        const uint32_t rows = setFile(id).rows;
        const std::vector<uint8_t> dat = pattern(rows * setFile(id).recordSize);
        for (const uint32_t tooMany : {rows + 1, UINT32_MAX}) {
            vx63test::removeLog();
            EXPECT_EQ(vx63_writeSetFile(id, dat.data(), "ABC", tooMany), -1) << id;
            EXPECT_THAT(logMessages(), ElementsAre("vx63_writeSetFile: Start.",
                                                   "vx63_writeSetFile: arg out of range error. ulUserLine=" +
                                                       std::to_string(tooMany)));
        }
        vx63test::removeLog();
        lsys().expectWrite(id, "ABC", rows, dat);
        lsys().expectSync();
        EXPECT_EQ(vx63_writeSetFile(id, dat.data(), "ABC", rows), 0) << id;
        EXPECT_THAT(logMessages(), ElementsAre("vx63_writeSetFile: Start.",
                                               writeLine(static_cast<int32_t>(id), dat.data(), "ABC", rows),
                                               "vx63_writeSetFile: End. iRet=0"));
    }
}

TEST_F(WholeFileTest, WriteOfNoRecordsWritesTheHeaderAlone)
{
    const uint8_t dat[1] = {};
    lsys().expectWrite(14, "ABC", 0, {});
    lsys().expectSync();
    EXPECT_EQ(vx63_writeSetFile(14, dat, "ABC", 0), 0);
    EXPECT_EQ(vx63test::pathOf(14, "ABC"), "/usr/local/bin/user_set/ABC.csv");
    lsys().expectWrite(15, "", 0, {});
    lsys().expectSync();
    EXPECT_EQ(vx63_writeSetFile(15, dat, nullptr, 0), 0);
}

TEST_F(WholeFileTest, WriteOfAnOrdinaryFileIsAlwaysWhole)
{
    const std::vector<uint8_t> dat = pattern(24 * 88);
    for (const uint32_t ulUserLine : {999u, 0u, 3u, UINT32_MAX}) {
        vx63test::removeLog();
        lsys().expectWrite(4, "", 24, dat);
        lsys().expectSync();
        EXPECT_EQ(vx63_writeSetFile(4, dat.data(), nullptr, ulUserLine), 0);
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_writeSetFile: Start.", writeLine(4, dat.data(), "(null)", ulUserLine),
                                "vx63_writeSetFile: End. iRet=0"));
    }
}

TEST_F(WholeFileTest, WriteSyncsAndPassesTheWritersResultThrough)
{
    const uint8_t dat[5] = {1, 2, 3, 4, 5};
    for (const int32_t result : {0, 1, 57, -1, -3, INT32_MIN}) {
        vx63test::removeLog();
        lsys().expectWrite(1, "", 1, {1, 2, 3, 4, 5}, result);
        lsys().expectSync();
        EXPECT_EQ(vx63_writeSetFile(1, dat, nullptr, 0), result);
        EXPECT_THAT(logMessages(), ElementsAre("vx63_writeSetFile: Start.", writeLine(1, dat, "(null)", 0),
                                               "vx63_writeSetFile: End. iRet=" + std::to_string(result)));
    }
}

TEST_F(WholeFileTest, WriteRefusesANameThatThePathBufferDoesNotHold)
{
    const std::vector<uint8_t> dat = pattern(28);
    lsys().expectWrite(14, kLongestUserName, 1, dat);
    lsys().expectSync();
    EXPECT_EQ(vx63_writeSetFile(14, dat.data(), kLongestUserName.c_str(), 1), 0);
    for (const size_t size : {size_t{100}, size_t{5000}}) {
        vx63test::removeLog();
        const std::string name(size, 'n');
        EXPECT_EQ(vx63_writeSetFile(14, dat.data(), name.c_str(), 1), -1);
        EXPECT_THAT(
            logMessages(),
            ElementsAre("vx63_writeSetFile: Start.", writeLine(14, dat.data(), name, 1),
                        "vx63_writeSetFile: arg error. pcMeasFileName=[" + name.substr(0, 64) + "]..."));
    }
}

// ---- Several threads ----

TEST_F(WholeFileTest, EachThreadHasItsOwnPath)
{
    constexpr int kThreads = 4;
    for (const uint32_t id : {14u, 35u}) {
        std::barrier allInside(kThreads);
        lsys().onRead = [&allInside](const char* path, uint8_t* records) {
            allInside.arrive_and_wait(); // every thread has formed its path and none has left
            records[0] = static_cast<uint8_t>(path[std::string_view(path).rfind('/') + 1]);
            allInside.arrive_and_wait();
            return 1;
        };
        std::vector<std::thread> threads;
        uint8_t first[kThreads] = {};
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([id, i, &first] {
                const char name[] = {static_cast<char>('a' + i), '\0'};
                std::vector<uint8_t> dat(324 * 28);
                EXPECT_EQ(vx63_readSetFile(id, dat.data(), name, 0), 1);
                first[i] = dat[0];
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_THAT(first, ElementsAre('a', 'b', 'c', 'd')) << id;
    }
}

} // namespace

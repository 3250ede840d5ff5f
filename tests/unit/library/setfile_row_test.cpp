#include "support/set_file_test.h"

#include <barrier>
#include <cstring>
#include <thread>

namespace {

using testing::_;
using testing::ElementsAre;
using testing::StartsWith;
using vx63test::logMessages;
using vx63test::lsys;
using vx63test::pattern;
using vx63test::pointerText;
using vx63test::setFile;

using RowTest = vx63test::SetFileTest;

constexpr uint32_t kSets[] = {14, 35, 42, 44, 46, 48};

// What the whole-file read logs between the lines of the row access.
std::vector<std::string> nestedRead(uint32_t id, const char* name, uint32_t bDefault, int32_t result)
{
    return {"vx63_readSetFile: Start.",
            "vx63_readSetFile: fileId=" + std::to_string(id) + ", pDat=STAGING, pcMeasFileName=[" + name +
                "], bDefault=" + std::to_string(bDefault),
            "vx63_readSetFile: End. iRet=" + std::to_string(result)};
}

// The log with the staging buffer's address, which only the library knows, and the row's made readable.
std::vector<std::string> readableLog()
{
    std::vector<std::string> lines = logMessages();
    for (std::string& line : lines) {
        const size_t place = line.find("pDat=0x");
        const bool nested =
            line.rfind("vx63_readSetFile: ", 0) == 0 || line.rfind("vx63_writeSetFile: ", 0) == 0;
        if (nested && place != std::string::npos) {
            line.replace(place, line.find(',', place) - place, "pDat=STAGING");
        }
        const size_t info = line.find("pInfo=0x");
        if (info != std::string::npos) {
            line.replace(info, std::string::npos, "pInfo=ROW");
        }
    }
    return lines;
}

std::vector<std::string> joined(std::vector<std::string> first, const std::vector<std::string>& second,
                                const std::vector<std::string>& third = {})
{
    first.insert(first.end(), second.begin(), second.end());
    first.insert(first.end(), third.begin(), third.end());
    return first;
}

// ---- vx63_readSetFileIdx ----

TEST_F(RowTest, ReadMovesTheRecordAlone)
{
    const std::vector<uint8_t> file = pattern(3 * 28);
    for (const uint32_t index : {0u, 1u, 2u}) {
        vx63test::removeLog();
        std::vector<uint8_t> dat(3 * 28, 0xEE);
        std::vector<uint8_t> expected = dat;
        std::copy_n(file.begin() + index * 28, 28, expected.begin() + index * 28);
        lsys().expectRead(14, "ABC", file, 3);
        EXPECT_EQ(vx63_readSetFileIdx(14, dat.data(), index, "ABC", 0), 3);
        EXPECT_EQ(dat, expected);
        const std::string idx = std::to_string(index);
        EXPECT_EQ(readableLog(),
                  joined({"vx63_readSetFileIdx: Start.",
                          "vx63_readSetFileIdx: fileId=14, pDat=" + pointerText(dat.data()) +
                              ", ulIdx=" + idx + ", pcUserFileName=[ABC], bDefault=0"},
                         nestedRead(14, "ABC", 0, 3),
                         {"vx63_readSetFileIdx: pInfo=ROW",
                          "vx63_readSetFileIdx: pInfo->dataSize=28 ulOffset=" + std::to_string(index * 28),
                          "vx63_readSetFileIdx: End. iRet=3"}));
    }
}

TEST_F(RowTest, ReadOfARecordBehindTheLastIsRefused)
{
    const std::pair<int32_t, uint32_t> cases[] = {{3, 3}, {3, 4}, {0, 0}, {3, UINT32_MAX}, {324, 0x80000000}};
    for (const auto& [count, index] : cases) {
        vx63test::removeLog();
        uint8_t dat[1] = {0xEE};
        lsys().expectRead(14, "ABC", {}, count);
        EXPECT_EQ(vx63_readSetFileIdx(14, dat, index, "ABC", 0), -1);
        EXPECT_EQ(dat[0], 0xEE);
        const std::string idx = std::to_string(index);
        EXPECT_EQ(readableLog(), joined({"vx63_readSetFileIdx: Start.",
                                         "vx63_readSetFileIdx: fileId=14, pDat=" + pointerText(dat) +
                                             ", ulIdx=" + idx + ", pcUserFileName=[ABC], bDefault=0"},
                                        nestedRead(14, "ABC", 0, count),
                                        {"vx63_readSetFileIdx: arg range error. -1line ulIdx=" + idx}));
    }
}

TEST_F(RowTest, ReadOfAFileThatFailsPassesTheResultThrough)
{
    for (const int32_t result : {-1, -2, -9, INT32_MIN}) {
        vx63test::removeLog();
        uint8_t dat[1] = {0xEE};
        lsys().expectRead(35, "ABC", pattern(28), result); // a rest that the reader left
        EXPECT_EQ(vx63_readSetFileIdx(35, dat, 0, "ABC", 0), result);
        EXPECT_EQ(dat[0], 0xEE);
        EXPECT_EQ(readableLog(), joined({"vx63_readSetFileIdx: Start.",
                                         "vx63_readSetFileIdx: fileId=35, pDat=" + pointerText(dat) +
                                             ", ulIdx=0, pcUserFileName=[ABC], bDefault=0"},
                                        nestedRead(35, "ABC", 0, result)));
    }
}

TEST_F(RowTest, ReadOfFactoryContentsDeliversOneRecordAtItsPlace)
{
    std::vector<uint8_t> dat(1001 * 12, 0xEE);
    EXPECT_EQ(vx63_readSetFileIdx(33, dat.data(), 500, nullptr, 1), 1001);
    std::vector<uint8_t> expected(1001 * 12, 0xEE);
    const std::vector<uint8_t> record = vx63test::bytes("33 35 2E 30 30 00 00 00 | B8 88 00 00"); // 35.00
    std::copy(record.begin(), record.end(), expected.begin() + 500 * 12);
    EXPECT_EQ(dat, expected);
    EXPECT_THAT(logMessages(), ElementsAre(_,
                                           "vx63_readSetFileIdx: fileId=33, pDat=" + pointerText(dat.data()) +
                                               ", ulIdx=500, pcUserFileName=[(null)], bDefault=1",
                                           _, _, _, StartsWith("vx63_readSetFileIdx: pInfo=0x"),
                                           "vx63_readSetFileIdx: pInfo->dataSize=12 ulOffset=6000",
                                           "vx63_readSetFileIdx: End. iRet=1001"));
    EXPECT_EQ(vx63_readSetFileIdx(33, dat.data(), 1000, nullptr, 1), 1001);
    EXPECT_EQ(vx63_readSetFileIdx(33, dat.data(), 1001, nullptr, 1), -1);
}

TEST_F(RowTest, ReadOfAListIgnoresTheDefaultFlag)
{
    std::vector<uint8_t> dat(2 * 15);
    lsys().expectRead(15, "", pattern(2 * 15), 2);
    EXPECT_EQ(vx63_readSetFileIdx(15, dat.data(), 1, nullptr, 1), 2);
}

TEST_F(RowTest, ReadRefusesWhatIsNoFile)
{
    uint8_t dat[1] = {};
    EXPECT_EQ(vx63_readSetFileIdx(50, dat, 0, "ABC", 0), -1);
    EXPECT_EQ(vx63_readSetFileIdx(UINT32_MAX, nullptr, 0, nullptr, 0), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_readSetFileIdx: Start.", "vx63_readSetFileIdx: arg error. fileId=50",
                            "vx63_readSetFileIdx: Start.", "vx63_readSetFileIdx: arg error. fileId=-1"));
}

TEST_F(RowTest, ReadRefusesNullPointers)
{
    EXPECT_EQ(vx63_readSetFileIdx(14, nullptr, 0, nullptr, 0), -1);
    EXPECT_THAT(logMessages(), ElementsAre("vx63_readSetFileIdx: Start.",
                                           "vx63_readSetFileIdx: arg null pointer error. pDat=(nil)"));
    uint8_t dat[1] = {};
    for (const uint32_t id : kSets) {
        vx63test::removeLog();
        EXPECT_EQ(vx63_readSetFileIdx(id, dat, 0, nullptr, 0), -1) << id;
        EXPECT_THAT(logMessages(),
                    ElementsAre("vx63_readSetFileIdx: Start.",
                                "vx63_readSetFileIdx: arg null pointer error. pcUserFileName=(nil)"));
    }
}

TEST_F(RowTest, ReadRefusesANameThatThePathBufferDoesNotHold)
{
    uint8_t dat[1] = {0xEE};
    EXPECT_EQ(vx63_readSetFileIdx(14, dat, 0, std::string(100, 'n').c_str(), 0), -1);
    EXPECT_EQ(vx63_writeSetFileIdx(14, dat, 0, std::string(100, 'n').c_str()), -1);
    EXPECT_EQ(dat[0], 0xEE);
}

// ---- vx63_writeSetFileIdx ----

TEST_F(RowTest, WriteOfASetRewritesAsManyRecordsAsItHeld)
{
    const std::vector<uint8_t> file = pattern(5 * 28);
    for (const uint32_t index : {0u, 2u, 4u}) {
        vx63test::removeLog();
        const std::vector<uint8_t> dat = pattern(5 * 28, 0x90);
        std::vector<uint8_t> written = file;
        std::copy_n(dat.begin() + index * 28, 28, written.begin() + index * 28);
        lsys().expectRead(46, "ABC", file, 5);
        lsys().expectWrite(46, "ABC", 5, written, 2);
        lsys().expectSync();
        EXPECT_EQ(vx63_writeSetFileIdx(46, dat.data(), index, "ABC"), 2);
        EXPECT_EQ(readableLog(),
                  joined({"vx63_writeSetFileIdx: Start.",
                          "vx63_writeSetFileIdx: fileId=46, pDat=" + pointerText(dat.data()) +
                              ", ulIdx=" + std::to_string(index) + ", pcUserFileName=[ABC]"},
                         nestedRead(46, "ABC", 0, 5),
                         {"vx63_writeSetFile: Start.",
                          "vx63_writeSetFile: fileId=46, pDat=STAGING, pcMeasFileName=[ABC], ulUserLine=5",
                          "vx63_writeSetFile: End. iRet=2", "vx63_writeSetFileIdx: End. iRet=2"}));
    }
}

TEST_F(RowTest, WriteOfAnOrdinaryFileRewritesAllItsRecords)
{
    // Something large in the staging buffer first: none of it may reach the next file.
    std::vector<uint8_t> dat(1001 * 12, 0xEE);
    lsys().expectRead(33, "", pattern(1001 * 12), 1001);
    EXPECT_EQ(vx63_readSetFileIdx(33, dat.data(), 0, nullptr, 0), 1001);

    // The file on disk holds 2 of 4 records.
    const std::vector<uint8_t> file = pattern(2 * 8);
    std::vector<uint8_t> written = file;
    written.resize(4 * 8);
    std::fill_n(written.begin() + 8, 8, uint8_t{0xEE});
    lsys().expectRead(7, "", file, 2);
    lsys().expectWrite(7, "", 4, written);
    lsys().expectSync();
    std::fill(dat.begin(), dat.end(), uint8_t{0xEE});
    EXPECT_EQ(vx63_writeSetFileIdx(7, dat.data(), 1, nullptr), 0);
}

TEST_F(RowTest, WriteNeverAppends)
{
    const std::pair<int32_t, uint32_t> cases[] = {{3, 3}, {0, 0}, {3, UINT32_MAX}};
    for (const auto& [count, index] : cases) {
        vx63test::removeLog();
        const uint8_t dat[1] = {};
        lsys().expectRead(14, "ABC", {}, count);
        EXPECT_EQ(vx63_writeSetFileIdx(14, dat, index, "ABC"), -1);
        EXPECT_EQ(logMessages().back(),
                  "vx63_writeSetFileIdx: arg range error. -1line ulIdx=" + std::to_string(index));
    }
}

TEST_F(RowTest, WriteToASetThatDoesNotExistWritesNothing)
{
    const uint8_t dat[28] = {};
    lsys().expectRead(14, "ABC", {}, -5);
    EXPECT_EQ(vx63_writeSetFileIdx(14, dat, 0, "ABC"), -5);
    EXPECT_EQ(logMessages().back(), "vx63_readSetFile: End. iRet=-5");
}

TEST_F(RowTest, WritePassesTheWritersFailureThrough)
{
    const std::vector<uint8_t> dat = pattern(5);
    lsys().expectRead(1, "", {0, 0, 0, 0, 0}, 1);
    lsys().expectWrite(1, "", 1, dat, -4);
    lsys().expectSync();
    EXPECT_EQ(vx63_writeSetFileIdx(1, dat.data(), 0, nullptr), -4);
    EXPECT_EQ(logMessages().back(), "vx63_writeSetFileIdx: End. iRet=-4");
}

TEST_F(RowTest, WriteRefusesBadArguments)
{
    const uint8_t dat[1] = {};
    EXPECT_EQ(vx63_writeSetFileIdx(50, nullptr, 0, nullptr), -1);
    EXPECT_EQ(vx63_writeSetFileIdx(14, nullptr, 0, nullptr), -1);
    EXPECT_EQ(vx63_writeSetFileIdx(48, dat, 0, nullptr), -1);
    EXPECT_THAT(logMessages(),
                ElementsAre("vx63_writeSetFileIdx: Start.", "vx63_writeSetFileIdx: arg error. fileId=50",
                            "vx63_writeSetFileIdx: Start.",
                            "vx63_writeSetFileIdx: arg null pointer error. pDat=(nil)",
                            "vx63_writeSetFileIdx: Start.",
                            "vx63_writeSetFileIdx: arg null pointer error. pcUserFileName=(nil)"));
}

// ---- A platform that reports more records than it was asked for ----

TEST_F(RowTest, ARecordLiesWithinTheFilesRowsWhateverThePlatformReports)
{
    for (const int32_t count : {2, 1002, INT32_MAX}) {
        for (const uint32_t index : {1u, 1001u, 500000000u}) {
            uint8_t dat[5] = {};
            lsys().expectRead(1, "", {1, 2, 3, 4, 5}, count);
            EXPECT_EQ(vx63_readSetFileIdx(1, dat, index, nullptr, 0), -1);
            lsys().expectRead(1, "", {1, 2, 3, 4, 5}, count);
            EXPECT_EQ(vx63_writeSetFileIdx(1, dat, index, nullptr), -1);
        }
        std::vector<uint8_t> dat(324 * 28);
        lsys().expectRead(14, "ABC", {}, count);
        EXPECT_EQ(vx63_readSetFileIdx(14, dat.data(), 324, "ABC", 0), -1);
    }
    // A write does not carry the wrong number on.
    uint8_t dat[15] = {};
    lsys().expectRead(15, "", {}, 141);
    EXPECT_EQ(vx63_writeSetFileIdx(15, dat, 0, nullptr), -1);
}

// ---- Several threads ----

TEST_F(RowTest, EachThreadHasItsOwnStagingBuffer)
{
    constexpr int kThreads = 4;
    std::barrier allInside(kThreads);
    lsys().onRead = [&](const char* path, uint8_t* records) {
        allInside.arrive_and_wait();
        memset(records, path[24], 28);
        allInside.arrive_and_wait(); // every thread has filled its buffer and none has copied from it
        return 1;
    };
    std::vector<std::thread> threads;
    std::vector<std::vector<uint8_t>> read(kThreads, std::vector<uint8_t>(28));
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([i, &read] {
            const char name[] = {static_cast<char>('a' + i), '\0'};
            EXPECT_EQ(vx63_readSetFileIdx(14, read[static_cast<size_t>(i)].data(), 0, name, 0), 1);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int i = 0; i < kThreads; ++i) {
        EXPECT_EQ(read[static_cast<size_t>(i)], std::vector<uint8_t>(28, static_cast<uint8_t>('a' + i)));
    }
}

} // namespace

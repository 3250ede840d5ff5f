#include "support/set_file_test.h"

namespace {

using vx63test::kSetFileCount;
using vx63test::lsys;
using vx63test::pattern;
using vx63test::SetFile;
using vx63test::setFile;

using CatalogueTest = vx63test::SetFileTest;

TEST_F(CatalogueTest, TheTypedTableIsWhole)
{
    for (uint32_t id = 0; id < kSetFileCount; ++id) {
        EXPECT_EQ(setFile(id).columns.size(), setFile(id).columnCount) << id;
    }
    EXPECT_EQ(setFile(0).header, "POWER_OFF_SEL1,POWER_OFF_SEL2,POWER_OFF_SEL3,POWER_OFF_SEL4,POWER_OFF_SEL5,"
                                 "POWER_OFF_SEL6,POWER_OFF");
    EXPECT_EQ(setFile(34).columns.back().ulOffset, 66u);
}

// The script knows the table: path, version, header, columns, sizes and counts of each call are compared.
TEST_F(CatalogueTest, EveryFileIsReadAsItIsDescribed)
{
    for (uint32_t id = 0; id < kSetFileCount; ++id) {
        const SetFile& file = setFile(id);
        const std::vector<uint8_t> contents = pattern(file.rows * file.recordSize);
        std::vector<uint8_t> read(contents.size());
        lsys().expectRead(id, "ABC", contents, static_cast<int32_t>(file.rows));
        EXPECT_EQ(vx63_readSetFile(id, read.data(), "ABC", 0), static_cast<int32_t>(file.rows)) << id;
        EXPECT_EQ(read, contents) << id;
    }
}

TEST_F(CatalogueTest, EveryFileIsWrittenAsItIsDescribed)
{
    for (uint32_t id = 0; id < kSetFileCount; ++id) {
        const SetFile& file = setFile(id);
        const std::vector<uint8_t> contents = pattern(file.rows * file.recordSize);
        lsys().expectWrite(id, "ABC", file.rows, contents);
        lsys().expectSync();
        EXPECT_EQ(vx63_writeSetFile(id, contents.data(), "ABC", file.rows), 0) << id;
    }
}

TEST_F(CatalogueTest, FactoryContentsAreAsLargeAsTheFile)
{
    constexpr uint8_t kGuard = 0xA5;
    for (uint32_t id = 0; id < kSetFileCount; ++id) {
        const SetFile& file = setFile(id);
        if (file.defaultSize == 0) {
            continue;
        }
        EXPECT_EQ(file.defaultSize, file.rows * file.recordSize) << id;
        // Once over each of two grounds: a byte that stays as it was is not written.
        std::vector<uint8_t> low(file.defaultSize + 1, 0x00);
        std::vector<uint8_t> high(file.defaultSize + 1, 0xFF);
        low.back() = high.back() = kGuard;
        EXPECT_EQ(vx63_readSetFile(id, low.data(), nullptr, 1), static_cast<int32_t>(file.rows)) << id;
        EXPECT_EQ(vx63_readSetFile(id, high.data(), nullptr, 1), static_cast<int32_t>(file.rows)) << id;
        EXPECT_EQ(low, high) << id;
        EXPECT_EQ(low.back(), kGuard) << id;
    }
}

} // namespace

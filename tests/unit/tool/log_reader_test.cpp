// The log read line by line while it grows, is started anew and is replaced.
#include "log/reader.h"

#include "common/failure.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string>
#include <vector>

using namespace tool;
using Lines = std::vector<std::string>;

namespace {

class LogReaderTest : public testing::Test {
protected:
    void SetUp() override
    {
        char folder[] = "/tmp/vx63-log-reader-XXXXXX";
        ASSERT_NE(mkdtemp(folder), nullptr);
        m_folder = folder;
        m_path = m_folder / "log.txt";
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    void append(const std::string& text) { std::ofstream(m_path, std::ios::app) << text; }
    void restart(const std::string& text) { std::ofstream(m_path, std::ios::trunc) << text; }

    static Lines readAll(LogReader& reader)
    {
        Lines lines;
        reader.read([&](std::string_view line) { lines.emplace_back(line); });
        return lines;
    }

    std::filesystem::path m_folder;
    std::filesystem::path m_path;
};

TEST_F(LogReaderTest, GoesOnWhereItEnded)
{
    append("one\ntwo\n");
    LogReader reader(m_path);
    EXPECT_EQ(readAll(reader), (Lines{"one", "two"}));
    EXPECT_EQ(readAll(reader), Lines{});
    append("three\n");
    EXPECT_EQ(readAll(reader), Lines{"three"});
}

TEST_F(LogReaderTest, KeepsHalfALineUntilItsEndComes)
{
    append("one\nhal");
    LogReader reader(m_path);
    EXPECT_EQ(readAll(reader), Lines{"one"});
    append("f\n");
    EXPECT_EQ(readAll(reader), Lines{"half"});
    append("rest");
    EXPECT_EQ(readAll(reader), Lines{});
    Lines last;
    reader.finish([&](std::string_view line) { last.emplace_back(line); });
    EXPECT_EQ(last, Lines{"rest"});
}

TEST_F(LogReaderTest, StartsAgainWhenTheFileIsEmptied)
{
    append("a long line at the beginning\n");
    LogReader reader(m_path);
    EXPECT_EQ(readAll(reader).size(), 1u);
    restart("new\n");
    EXPECT_EQ(readAll(reader), Lines{"new"});
}

TEST_F(LogReaderTest, StartsAgainWhenTheFileIsEmptiedAndHasGrownAsLongAgain)
{
    append("1700000000.000001 old\n");
    LogReader reader(m_path);
    EXPECT_EQ(readAll(reader).size(), 1u);
    restart("1700000000.000002 new\nmore\n");
    EXPECT_EQ(readAll(reader), (Lines{"1700000000.000002 new", "more"}));
}

TEST_F(LogReaderTest, StartsAgainWhenTheFileIsShorterAlthoughItBeginsAsBefore)
{
    const std::string first(64, 'x');
    append(first + "\none\ntwo\n");
    LogReader reader(m_path);
    EXPECT_EQ(readAll(reader).size(), 3u);
    restart(first + "\nnew\n");
    EXPECT_EQ(readAll(reader), (Lines{first, "new"}));
}

TEST_F(LogReaderTest, ReadsTheOldFileToItsEndBeforeTheNewOne)
{
    append("one\n");
    LogReader reader(m_path);
    EXPECT_EQ(readAll(reader), Lines{"one"});
    append("two\n");
    std::filesystem::rename(m_path, m_folder / "old.txt");
    append("three\n");
    EXPECT_EQ(readAll(reader), (Lines{"two", "three"}));
    std::filesystem::remove(m_path);
    EXPECT_EQ(readAll(reader), Lines{});
    append("four\n");
    EXPECT_EQ(readAll(reader), Lines{"four"});
}

TEST_F(LogReaderTest, WaitsForAFileThatIsNotThereYet)
{
    LogReader reader(m_path);
    EXPECT_FALSE(reader.open());
    EXPECT_EQ(readAll(reader), Lines{});
    append("one\n");
    EXPECT_EQ(readAll(reader), Lines{"one"});
}

TEST_F(LogReaderTest, TellsWhatCannotBeRead)
{
    LogReader folder(m_folder);
    try {
        readAll(folder);
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code(), kExitNoInput);
    }
}

TEST(LineSplitter, LongLinesComeInParts)
{
    LineSplitter splitter;
    std::vector<size_t> lengths;
    const LineSink sink = [&](std::string_view line) { lengths.push_back(line.size()); };
    const std::string piece(1000000, 'x');
    splitter.feed(piece, sink);
    splitter.feed(piece, sink);
    splitter.feed("\n\nab\n", sink);
    splitter.finish(sink);
    EXPECT_EQ(lengths, (std::vector<size_t>{1048576, 951424, 0, 2}));
}

} // namespace

// The text form of settings files: what is written, what is read, what is refused and how.
#include "libc_hooks.h"
#include "settings_file.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>

using namespace lsystest;

namespace {

// A channel of a set, with a gap behind the last column.
const Layout kSet{28,
                  "NO,ENBFLG,BAND,SPEC,CH,CENTER_FREQ,MOD,LOCAL_FREQ,GETDATA_FLG,DC_OUT",
                  {{3, 1, 0},
                   {3, 1, 1},
                   {3, 1, 2},
                   {3, 1, 3},
                   {6, 8, 4},
                   {3, 4, 12},
                   {2, 4, 16},
                   {3, 4, 20},
                   {3, 1, 24},
                   {3, 1, 25}}};

// CSV order is not the order in memory.
const Layout kConversion{6, "BAND,BDSYS,BDSYS_TUNE", {{3, 1, 4}, {3, 2, 0}, {3, 2, 2}}};

const Layout kChannel{12, "CH_NO,CENT_FREQ", {{6, 8, 0}, {3, 4, 8}}};
const Layout kSmall{5, "T,N", {{6, 4, 0}, {3, 1, 4}}};
const Layout kText{8, "T", {{6, 8, 0}}};

class FormatTest : public FolderTest {};

TEST_F(FormatTest, WritesVersionHeaderAndRecords)
{
    const Bytes records = {1,    1,    2,    3,    'B', 'S', '-', '1', '5', 0, 0, 0, // NO to CH
                           0x38, 0x05, 0xB3, 0x00, 26,  0,   0,   0,                 // 11732280, 26
                           0xFF, 0xFF, 0xFF, 0xFF, 1,   0,   0,   0,                 // unused
                           255,  0,    0,    0,    0,   0,   0,   0,   0,   0, 0, 0, //
                           0,    0,    0,    0,    0,   0,   0,   0,                 //
                           0,    0,    0,    0,    0,   128, 0,   0};
    ASSERT_EQ(write(path(), kSet, records), LSYS_OK);
    EXPECT_EQ(textOf(path()), "1.0.0\n"
                              "NO,ENBFLG,BAND,SPEC,CH,CENTER_FREQ,MOD,LOCAL_FREQ,GETDATA_FLG,DC_OUT\n"
                              "1,1,2,3,BS-15,11732280,26,4294967295,1,0\n"
                              "255,0,0,0,,0,0,0,0,128\n");
    const Read back = read(path(), kSet, 2);
    EXPECT_EQ(back.result, 2);
    EXPECT_EQ(back.records, records);
}

TEST_F(FormatTest, KeepsTheOrderOfColumns)
{
    const Bytes records = {0x02, 0x01, 0x04, 0x03, 7, 0};
    ASSERT_EQ(write(path(), kConversion, records), LSYS_OK);
    EXPECT_EQ(textOf(path()), "1.0.0\nBAND,BDSYS,BDSYS_TUNE\n7,258,772\n");
    EXPECT_EQ(read(path(), kConversion, 1).records, records);
}

TEST_F(FormatTest, AFileMayHaveNoRecords)
{
    ASSERT_EQ(write(path(), kChannel, {}), LSYS_OK);
    EXPECT_EQ(textOf(path()), "1.0.0\nCH_NO,CENT_FREQ\n");
    EXPECT_EQ(read(path(), kChannel, 0).result, 0);
    const Read back = read(path(), kChannel, 2);
    EXPECT_EQ(back.result, 0);
    EXPECT_EQ(back.records, Bytes(24, kUntouched));
}

TEST_F(FormatTest, FewerRecordsThanRoomLeaveTheRestAlone)
{
    putText(path(), "1.0.0\nCH_NO,CENT_FREQ\nA,1\n");
    const Read back = read(path(), kChannel, 2);
    EXPECT_EQ(back.result, 1);
    Bytes expected = {'A', 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0};
    expected.resize(24, kUntouched);
    EXPECT_EQ(back.records, expected);
}

TEST_F(FormatTest, GapsAreZeroAfterARead)
{
    putText(path(), "1.0.0\nA,B\n1,2\n");
    const Layout gaps{8, "A,B", {{3, 1, 1}, {3, 2, 4}}};
    EXPECT_EQ(read(path(), gaps, 1).records, (Bytes{0, 1, 0, 0, 2, 0, 0, 0}));
}

TEST_F(FormatTest, BytesBehindTheNulOfATextAreNotKept)
{
    ASSERT_EQ(write(path(), kText, {'A', 0, 'b', 'c', 'd', 'e', 'f', 'g'}), LSYS_OK);
    EXPECT_EQ(read(path(), kText, 1).records, (Bytes{'A', 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(FormatTest, NumbersReachFromEndToEnd)
{
    const struct {
        uint32_t type;
        uint32_t width;
        const char* text;
        Bytes bytes;
    } numbers[] = {
        {0, 1, "0", {0}},
        {0, 1, "255", {0xFF}},
        {1, 2, "65535", {0xFF, 0xFF}},
        {2, 4, "4294967295", {0xFF, 0xFF, 0xFF, 0xFF}},
        {3, 1, "9", {9}},
        {3, 1, "10", {10}},
        {3, 1, "128", {0x80}},
        {3, 2, "256", {0x00, 0x01}},
        {3, 2, "65535", {0xFF, 0xFF}},
        {3, 4, "2147483648", {0x00, 0x00, 0x00, 0x80}},
        {3, 4, "4294967295", {0xFF, 0xFF, 0xFF, 0xFF}},
        {4, 1, "127", {0x7F}},
        {4, 1, "-1", {0xFF}},
        {4, 1, "-128", {0x80}},
        {4, 2, "32767", {0xFF, 0x7F}},
        {4, 2, "-32768", {0x00, 0x80}},
        {4, 4, "2147483647", {0xFF, 0xFF, 0xFF, 0x7F}},
        {4, 4, "-10", {0xF6, 0xFF, 0xFF, 0xFF}},
        {4, 4, "-2147483648", {0x00, 0x00, 0x00, 0x80}},
    };
    for (const auto& number : numbers) {
        const Layout layout{number.width, "N", {{number.type, number.width, 0}}};
        ASSERT_EQ(write(path(), layout, number.bytes), LSYS_OK);
        EXPECT_EQ(textOf(path()), std::string("1.0.0\nN\n") + number.text + "\n") << number.type;
        EXPECT_EQ(read(path(), layout, 1).records, number.bytes) << number.text;
    }
}

TEST_F(FormatTest, NumbersBeyondTheFieldAreRefused)
{
    const struct {
        uint32_t type;
        uint32_t width;
        const char* text;
    } numbers[] = {
        {0, 1, "256"},
        {3, 1, "-1"},
        {3, 4, "-1"},
        {1, 2, "65536"},
        {3, 2, "4294967297"},
        {3, 4, "4294967296"},
        {3, 4, "18446744073709551616"},
        {3, 4, "18446744073709551617"},
        {3, 4, "340282366920938463463374607431768211457"},
        {4, 1, "128"},
        {4, 1, "-129"},
        {4, 2, "32768"},
        {4, 2, "-32769"},
        {4, 4, "2147483648"},
        {4, 4, "-2147483649"},
        {4, 4, "-18446744073709551615"},
    };
    for (const auto& number : numbers) {
        const Layout layout{number.width, "N", {{number.type, number.width, 0}}};
        putText(path(), std::string("1.0.0\nN\n") + number.text + "\n");
        const Read back = read(path(), layout, 1);
        EXPECT_EQ(back.result, LSYS_ERR_RANGE) << number.text;
        EXPECT_EQ(back.records, Bytes(number.width, 0)) << number.text;
    }
}

TEST_F(FormatTest, WhatIsNoNumberIsRefused)
{
    const Layout layout{4, "N", {{4, 4, 0}}};
    for (const char* text : {"", "-", "--1", "+1", " 1", "1 ", "1.5", "1e3", "0x10", "1-", "\"1\"", "A", "1A",
                             "1:", "1/", "99999999999999999999A", "\xEF\xBC\x91"}) {
        putText(path(), std::string("1.0.0\nN\n") + text + "\n");
        EXPECT_EQ(read(path(), layout, 1).result, LSYS_ERR_NUMBER) << "[" << text << "]";
    }
}

TEST_F(FormatTest, OtherWaysToWriteANumberAreRead)
{
    const Layout layout{4, "N", {{3, 4, 0}}};
    for (const char* text : {"7", "07", "000000000000000000000000000000007"}) {
        putText(path(), std::string("1.0.0\nN\n") + text + "\n");
        EXPECT_EQ(read(path(), layout, 1).records, (Bytes{7, 0, 0, 0})) << text;
    }
    putText(path(), "1.0.0\nN\n-0\n");
    EXPECT_EQ(read(path(), layout, 1).records, (Bytes{0, 0, 0, 0}));
}

TEST_F(FormatTest, TextsAreQuotedWhereTheyMustBe)
{
    const struct {
        Bytes bytes;
        std::string text;
    } texts[] = {
        {{0, 0, 0, 0, 0, 0, 0, 0}, ""},
        {{'C', '2', '2', 0, 0, 0, 0, 0}, "C22"},
        {{'1', '2', '3', '4', '5', '6', '7', 0}, "1234567"},
        {{'a', ' ', 'b', 0, 0, 0, 0, 0}, "a b"},
        {{' ', 'a', 0, 0, 0, 0, 0, 0}, "\" a\""},
        {{'a', ' ', 0, 0, 0, 0, 0, 0}, "\"a \""},
        {{' ', 0, 0, 0, 0, 0, 0, 0}, "\" \""},
        {{'a', ',', 'b', 0, 0, 0, 0, 0}, "\"a,b\""},
        {{'"', 0, 0, 0, 0, 0, 0, 0}, "\"\"\"\""},
        {{'a', '"', '"', 0, 0, 0, 0, 0}, "\"a\"\"\"\"\""},
        {{'a', '\n', 'b', 0, 0, 0, 0, 0}, "\"a\nb\""},
        {{'\r', '\n', 0, 0, 0, 0, 0, 0}, "\"\r\n\""},
        {{'\r', 0, 0, 0, 0, 0, 0, 0}, "\"\r\""},
        {{'\t', 0, 0, 0, 0, 0, 0, 0}, "\"\t\""},
        {{0x01, 0x1F, 0x7F, 0, 0, 0, 0, 0}, "\"\x01\x1F\x7F\""},
        {{0x83, 0x65, 0xFF, 0x80, 0, 0, 0, 0}, "\x83\x65\xFF\x80"},
    };
    for (const auto& text : texts) {
        ASSERT_EQ(write(path(), kText, text.bytes), LSYS_OK) << text.text;
        EXPECT_EQ(textOf(path()), "1.0.0\nT\n" + text.text + "\n");
        const Read back = read(path(), kText, 1);
        EXPECT_EQ(back.result, 1) << text.text;
        EXPECT_EQ(back.records, text.bytes) << text.text;
    }
}

TEST_F(FormatTest, OtherWaysToWriteATextAreRead)
{
    putText(path(), "1.0.0\r\nT,N\r\n\"abc\",1\r\n\"\",2\n a ,3\r\n");
    const Read back = read(path(), kSmall, 3);
    EXPECT_EQ(back.result, 3);
    EXPECT_EQ(back.records, (Bytes{'a', 'b', 'c', 0, 1, 0, 0, 0, 0, 2, ' ', 'a', ' ', 0, 3}));
}

TEST_F(FormatTest, BadFilesAreToldApart)
{
    const std::string nul(1, '\0');
    const struct {
        std::string text;
        int32_t result;
    } files[] = {
        // the first line
        {"1.0.1\nT,N\n", LSYS_ERR_VERSION},
        {"1.0\nT,N\n", LSYS_ERR_VERSION},
        {"1.0.00\nT,N\n", LSYS_ERR_VERSION},
        {"\n1.0.0\nT,N\n", LSYS_ERR_VERSION},
        {"T,N\na,1\n", LSYS_ERR_VERSION},
        {"1.0.0,\nT,N\n", LSYS_ERR_VERSION},
        {"\xEF\xBB\xBF"
         "1.0.0\nT,N\n",
         LSYS_ERR_VERSION},
        {"\x7F"
         "ELF\x02\x01\x01\n",
         LSYS_ERR_BINARY},
        {"1.0.0" + nul + "\nT,N\n", LSYS_ERR_BINARY},
        {"1.0.0\rT,N\r", LSYS_ERR_BINARY},
        // the header
        {"1.0.0\nT\n", LSYS_ERR_COLUMNS},
        {"1.0.0\nT,N,X\n", LSYS_ERR_COLUMNS},
        {"1.0.0\nT,N,\n", LSYS_ERR_COLUMNS},
        {"1.0.0\nT,\n", LSYS_ERR_COLUMNS},
        {"1.0.0\n,N\n", LSYS_ERR_COLUMNS},
        {"1.0.0\n\nT,N\n", LSYS_ERR_COLUMNS},
        {"1.0.0\n\"T\",N\n", LSYS_ERR_QUOTE},
        {"1.0.0\nT,N" + nul + "\n", LSYS_ERR_BINARY},
        {"1.0.0\nT\t,N\n", LSYS_ERR_BINARY},
        // the records
        {"1.0.0\nT,N\na\n", LSYS_ERR_COLUMNS},
        {"1.0.0\nT,N\na\r\n", LSYS_ERR_COLUMNS},
        {"1.0.0\nT,N\na,1,\n", LSYS_ERR_COLUMNS},
        {"1.0.0\nT,N\na,1,2\n", LSYS_ERR_COLUMNS},
        {"1.0.0\nT,N\n\n", LSYS_ERR_COLUMNS},
        {"1.0.0\nT,N\na,1\n\n", LSYS_ERR_COLUMNS},
        {"1.0.0\nT,N\n\"a\"\n", LSYS_ERR_COLUMNS},
        {"1.0.0\nT,N\na,\n", LSYS_ERR_NUMBER},
        {"1.0.0\nT,N\na,x\n", LSYS_ERR_NUMBER},
        {"1.0.0\nT,N\na,256\n", LSYS_ERR_RANGE},
        {"1.0.0\nT,N\nabcd,1\n", LSYS_ERR_TEXT},
        {"1.0.0\nT,N\n\"abcd\",1\n", LSYS_ERR_TEXT},
        {"1.0.0\nT,N\n\"abc\"\"\",1\n", LSYS_ERR_TEXT},
        {"1.0.0\nT,N\na\"b,1\n", LSYS_ERR_QUOTE},
        {"1.0.0\nT,N\n\"a\"b,1\n", LSYS_ERR_QUOTE},
        {"1.0.0\nT,N\n\"a\" ,1\n", LSYS_ERR_QUOTE},
        {"1.0.0\nT,N\n\"a\n", LSYS_ERR_QUOTE},
        {"1.0.0\nT,N\n\"a", LSYS_ERR_QUOTE},
        {"1.0.0\nT,N\n\"", LSYS_ERR_QUOTE},
        {"1.0.0\nT,N\na,1\nb,2\nc,3\n", LSYS_ERR_RECORDS},
        {"1.0.0\nT,N\na,1\nb,2\nrubbish", LSYS_ERR_RECORDS},
        {"1.0.0\nT,N\na" + nul + ",1\n", LSYS_ERR_BINARY},
        {"1.0.0\nT,N\na,1" + nul + "\n", LSYS_ERR_BINARY},
        {"1.0.0\nT,N\n\"a" + nul + "\",1\n", LSYS_ERR_BINARY},
        {"1.0.0\nT,N\na,1\n" + nul, LSYS_ERR_BINARY},
        {"1.0.0\nT,N\na,1\nb,2\n" + nul, LSYS_ERR_BINARY},
        {"1.0.0\nT,N\na\t,1\n", LSYS_ERR_BINARY},
        {"1.0.0\nT,N\na\x7F,1\n", LSYS_ERR_BINARY},
        {"1.0.0\nT,N\na,1\t\n", LSYS_ERR_BINARY},
        {"1.0.0\nT,N\na,1\r", LSYS_ERR_CUT},
        {"1.0.0\nT,N\na,1\rb,2\n", LSYS_ERR_BINARY},
        {"1.0.0\nT,N\na\r,1\n", LSYS_ERR_BINARY},
        // the end
        {"", LSYS_ERR_CUT},
        {"1.0", LSYS_ERR_CUT},
        {"1.0.0", LSYS_ERR_CUT},
        {"1.0.0\n", LSYS_ERR_CUT},
        {"1.0.0\nT", LSYS_ERR_CUT},
        {"1.0.0\nT,N", LSYS_ERR_CUT},
        {"1.0.0\nT,N\na", LSYS_ERR_CUT},
        {"1.0.0\nT,N\na,", LSYS_ERR_CUT},
        {"1.0.0\nT,N\na,1", LSYS_ERR_CUT},
        {"1.0.0\nT,N\na,256", LSYS_ERR_CUT},
        {"1.0.0\nT,N\n\"a\"", LSYS_ERR_CUT},
        {"1.0.0\nT,N\na,1\nb,2", LSYS_ERR_CUT},
    };
    for (const auto& file : files) {
        putText(path(), file.text);
        EXPECT_EQ(read(path(), kSmall, 2).result, file.result) << "[" << file.text << "]";
    }
}

TEST_F(FormatTest, ATextOfOneByteIsAlwaysEmpty)
{
    const Layout layout{2, "T,N", {{6, 1, 0}, {3, 1, 1}}};
    putText(path(), "1.0.0\nT,N\n,1\n");
    EXPECT_EQ(read(path(), layout, 1).records, (Bytes{0, 1}));
    for (const char* text : {"a", "ab", "\"a\""}) {
        putText(path(), std::string("1.0.0\nT,N\n") + text + ",1\n");
        EXPECT_EQ(read(path(), layout, 1).result, LSYS_ERR_TEXT) << text;
    }
}

TEST_F(FormatTest, TheBadRecordIsZeroAndTheOthersAreWhole)
{
    putText(path(), "1.0.0\nT,N\nabc,1\ndef,300\nghi,3\n");
    const Read back = read(path(), kSmall, 3);
    EXPECT_EQ(back.result, LSYS_ERR_RANGE);
    EXPECT_EQ(back.records, (Bytes{'a', 'b', 'c', 0, 1, 0, 0, 0, 0, 0, kUntouched, kUntouched, kUntouched,
                                   kUntouched, kUntouched}));
}

TEST_F(FormatTest, TheBadRecordIsZeroThoughNothingOfItCanBeRead)
{
    putText(path(), std::string("1.0.0\nT,N\na,1\n\0,2\n", 18));
    const Read back = read(path(), kSmall, 3);
    EXPECT_EQ(back.result, LSYS_ERR_BINARY);
    EXPECT_EQ(back.records, (Bytes{'a', 0, 0, 0, 1, 0, 0, 0, 0, 0, kUntouched, kUntouched, kUntouched,
                                   kUntouched, kUntouched}));
}

TEST_F(FormatTest, ABadHeadLeavesTheRecordsAlone)
{
    putText(path(), "2.0.0\nT,N\nabc,1\n");
    EXPECT_EQ(read(path(), kSmall, 1).records, Bytes(5, kUntouched));
}

TEST_F(FormatTest, TheReaderDoesNotCompareNames)
{
    putText(path(), "1.0.0\nSomething else,\xE5\x90\x8D\n,1\n");
    EXPECT_EQ(read(path(), kSmall, 1).result, 1);
}

TEST_F(FormatTest, AOneColumnTextMayBeEmpty)
{
    const Bytes records(24, 0);
    ASSERT_EQ(write(path(), kText, records), LSYS_OK);
    EXPECT_EQ(textOf(path()), "1.0.0\nT\n\n\n\n");
    const Read back = read(path(), kText, 3);
    EXPECT_EQ(back.result, 3);
    EXPECT_EQ(back.records, records);
}

// The file is read and written in pieces: every byte of a record comes to lie at the end of one.
TEST_F(FormatTest, PiecesJoin)
{
    const Layout layout{22, "T,N,S,M,U", {{6, 12, 0}, {4, 4, 12}, {3, 2, 16}, {3, 1, 18}, {6, 3, 19}}};
    const Bytes record = {'a', '"', ',', '\n', '\r', '\n', 'x',  0, 0,   0,   0,
                          0,   0,   0,   0x00, 0x80, 0x39, 0x30, 9, 'u', ',', 0};
    const std::string line = "\"a\"\",\n\r\nx\",-2147483648,12345,9,\"u,\"\r\n";
    for (size_t back = 0; back <= line.size(); ++back) {
        const std::string version(16384 - std::string("\nT,N,S,M,U\n").size() - back, 'v');
        putText(path(), version + "\nT,N,S,M,U\n" + line + line);
        const Read found = read(path(), layout, 2, version.c_str());
        ASSERT_EQ(found.result, 2) << back;
        Bytes expected = record;
        expected.insert(expected.end(), record.begin(), record.end());
        ASSERT_EQ(found.records, expected) << back;

        ASSERT_EQ(write(path(), layout, expected, version.c_str()), LSYS_OK);
        ASSERT_EQ(read(path(), layout, 2, version.c_str()).records, expected) << back;
        ASSERT_EQ(truncate(path().c_str(), static_cast<off_t>(textOf(path()).size()) - 1), 0);
        ASSERT_EQ(read(path(), layout, 2, version.c_str()).result, LSYS_ERR_CUT) << back;

        std::string spoilt = version + "\nT,N,S,M,U\n" + line + line;
        if (spoilt.size() > 16384) {
            spoilt[16384] = '\0';
            putText(path(), spoilt);
            ASSERT_EQ(read(path(), layout, 2, version.c_str()).result, LSYS_ERR_BINARY) << back;
        }
    }
}

// Behind a text that leaves as little room as can be.
TEST_F(FormatTest, ANumberFindsRoom)
{
    const Layout layout{16404, "T,N", {{6, 16400, 0}, {4, 4, 16400}}};
    for (size_t length = 16350; length < 16400; ++length) {
        Bytes record(16404, 0);
        std::fill_n(record.begin(), length, uint8_t{'t'});
        record[16403] = 0x80;
        ASSERT_EQ(write(path(), layout, record), LSYS_OK);
        ASSERT_EQ(textOf(path()), "1.0.0\nT,N\n" + std::string(length, 't') + ",-2147483648\n") << length;
        ASSERT_EQ(read(path(), layout, 1).records, record) << length;
    }
}

TEST_F(FormatTest, LinesMayBeLongerThanAnyBuffer)
{
    const Layout layout{300001, "N,T", {{3, 1, 0}, {6, 300000, 1}}};
    Bytes record(300001, '"');
    record[0] = 200;
    record[300000] = 0;
    ASSERT_EQ(write(path(), layout, record), LSYS_OK);
    EXPECT_EQ(textOf(path()).size(), std::string("1.0.0\nN,T\n200,\"\"\n").size() + 2 * 299999);
    EXPECT_EQ(read(path(), layout, 1).records, record);

    std::string version;
    for (int i = 0; version.size() < 100000; ++i)
        version += std::to_string(i);
    version.resize(100000);
    ASSERT_EQ(write(path(), layout, record, version.c_str()), LSYS_OK);
    EXPECT_EQ(textOf(path()).substr(0, 100004), version + "\nN,T");
    EXPECT_EQ(read(path(), layout, 1, version.c_str()).records, record);
}

TEST_F(FormatTest, AHeaderMayBeLongerThanAnyBuffer)
{
    std::string names = std::string(20000, 'T') + "," + std::string(20000, 'N');
    const Layout layout{5, names, kSmall.columns};
    ASSERT_EQ(write(path(), layout, {'a', 0, 0, 0, 1}), LSYS_OK);
    EXPECT_EQ(textOf(path()), "1.0.0\n" + names + "\na,1\n");
    EXPECT_EQ(read(path(), layout, 1).records, (Bytes{'a', 0, 0, 0, 1}));
    putText(path(), "1.0.0\n" + names);
    EXPECT_EQ(read(path(), layout, 1).result, LSYS_ERR_CUT);
}

TEST_F(FormatTest, AFileMayEndBeforeAText)
{
    putText(path(), "1.0.0\nN,T\n1,");
    EXPECT_EQ(read(path(), {5, "N,T", {{3, 1, 0}, {6, 4, 1}}}, 1).result, LSYS_ERR_CUT);
}

TEST_F(FormatTest, ATextWithoutNulIsRefusedAndTheFileStays)
{
    putText(path(), "old");
    EXPECT_EQ(write(path(), kSmall, {'a', 0, 0, 0, 1, 'a', 'b', 'c', 'd', 1}), LSYS_ERR_TEXT);
    EXPECT_EQ(write(path(), kSmall, {'a', 'b', 'c', 'd', 0}), LSYS_ERR_TEXT); // the NUL is the number's
    EXPECT_EQ(textOf(path()), "old");
    EXPECT_EQ(namesIn(m_folder), std::vector<std::string>{"file.csv"});
}

TEST_F(FormatTest, ArgumentsAreChecked)
{
    const std::string there = path();
    const char* const file = there.c_str();
    putText(there, "1.0.0\nT,N\n");
    uint8_t records[10] = {};
    const LsysColumn* const columns = kSmall.columns.data();
    const auto reading = [&](const char* name, const char* version, uint32_t max, uint32_t count,
                             uint8_t* into, uint32_t size, const LsysColumn* described) {
        return lsys_readCsvNewFmt(name, version, max, count, into, size, described);
    };
    const auto writing = [&](const char* name, const char* version, const char* header, uint32_t number,
                             uint32_t count, const uint8_t* from, uint32_t size,
                             const LsysColumn* described) {
        return lsys_writeCsvNewFmt(name, version, header, number, count, from, size, described);
    };
    EXPECT_EQ(reading(file, "1.0.0", 2, 2, records, 5, columns), 0);
    EXPECT_EQ(reading(nullptr, "1.0.0", 2, 2, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(reading("", "1.0.0", 2, 2, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(reading(file, nullptr, 2, 2, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(reading(file, "", 2, 2, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(reading(file, "1\n", 2, 2, records, 5, columns), LSYS_ERR_ARG);
    const char within[] = "\0" // what lies before a version is none of it
                          "1\n";
    EXPECT_EQ(reading(file, within + 1, 2, 2, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(reading(file, "1.0.0", 0x80000000, 2, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(reading(file, "1.0.0", 0x7FFFFFFF, 2, records, 5, columns), 0);
    EXPECT_EQ(reading(file, "1.0.0", 2, 0, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(reading(file, "1.0.0", 2, 2, nullptr, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(reading(file, "1.0.0", 2, 2, records, 4, columns), LSYS_ERR_ARG); // does not fit
    EXPECT_EQ(reading(file, "1.0.0", 2, 2, records, 0, columns), LSYS_ERR_ARG);
    EXPECT_EQ(reading(file, "1.0.0", 2, 2, records, 5, nullptr), LSYS_ERR_ARG);

    EXPECT_EQ(writing(nullptr, "1.0.0", "T,N", 2, 2, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(writing("", "1.0.0", "T,N", 2, 2, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(writing(file, nullptr, "T,N", 2, 2, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(writing(file, "", "T,N", 2, 2, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(writing(file, "1\r", "T,N", 2, 2, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(writing(file, "1.0.0", nullptr, 2, 2, records, 5, columns), LSYS_ERR_ARG);
    for (const char* header : {"", "T", "T,N,X", "T,", ",N", ",", "T,N,", "T,\"N\"", "T\n,N", "T,N\n"})
        EXPECT_EQ(writing(file, "1.0.0", header, 2, 2, records, 5, columns), LSYS_ERR_ARG) << header;
    EXPECT_EQ(writing(file, "1.0.0", "T,N", 0x80000000, 2, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(writing("/none/file", "1.0.0", "T,N", 0x7FFFFFFF, 2, records, 5, columns), LSYS_ERR_MISSING);
    EXPECT_EQ(writing(file, "1.0.0", "T,N", 2, 0, records, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(writing(file, "1.0.0", "T,N", 2, 2, nullptr, 5, columns), LSYS_ERR_ARG);
    EXPECT_EQ(writing(file, "1.0.0", "T,N", 2, 2, records, 4, columns), LSYS_ERR_ARG);
    EXPECT_EQ(writing(file, "1.0.0", "T,N", 2, 2, records, 5, nullptr), LSYS_ERR_ARG);

    const LsysColumn impossible[] = {
        {5, 1, 0},          {7, 4, 0},          {UINT32_MAX, 1, 0}, // kinds that there are not
        {3, 0, 0},          {3, 3, 0},          {0, 8, 0},
        {4, 0, 0},          {4, 5, 0}, // widths that no number has
        {6, 0, 0},          {6, 17, 0},         {6, 1, 16},
        {3, 4, 13},         {3, 1, UINT32_MAX}, // beyond the record
        {6, UINT32_MAX, 1},
    };
    uint8_t record[16] = {};
    for (const LsysColumn& column : impossible) {
        EXPECT_EQ(reading(file, "1.0.0", 1, 1, record, 16, &column), LSYS_ERR_ARG)
            << column.ulType << "/" << column.ulWidth << "/" << column.ulOffset;
        EXPECT_EQ(writing(file, "1.0.0", "N", 1, 1, record, 16, &column), LSYS_ERR_ARG)
            << column.ulType << "/" << column.ulWidth << "/" << column.ulOffset;
    }
    EXPECT_EQ(textOf(there), "1.0.0\nT,N\n");
    EXPECT_EQ(namesIn(m_folder), std::vector<std::string>{"file.csv"});
}

TEST_F(FormatTest, WhatIsNoFileIsNotRead)
{
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0666), 0);
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path("socket").size(), sizeof address.sun_path);
    std::strcpy(address.sun_path, path("socket").c_str());
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);

    EXPECT_EQ(read(m_folder, kSmall, 1).result, LSYS_ERR_NOT_FILE);
    EXPECT_EQ(read(path("fifo"), kSmall, 1).result, LSYS_ERR_NOT_FILE); // and nobody waits for a writer
    EXPECT_EQ(read(path("socket"), kSmall, 1).result, LSYS_ERR_NOT_FILE);
    EXPECT_EQ(read("/dev/null", kSmall, 1).result, LSYS_ERR_NOT_FILE);
    for (const std::string& place : {path("fifo"), path("socket"), m_folder, m_folder + "/", m_folder + "/."})
        EXPECT_EQ(write(place, kSmall, {}), LSYS_ERR_NOT_FILE) << place;
    EXPECT_EQ(write("/dev/null", kSmall, {}), LSYS_ERR_NOT_FILE);
    close(listener);
}

TEST_F(FormatTest, WhatIsMissingIsToldFromWhatIsNotPermitted)
{
    putText(path("plain"), "");
    EXPECT_EQ(read(path("none"), kSmall, 1).result, LSYS_ERR_MISSING);
    EXPECT_EQ(read(path("none/file"), kSmall, 1).result, LSYS_ERR_MISSING);
    EXPECT_EQ(write(path("none/file"), kSmall, {}), LSYS_ERR_MISSING);
    EXPECT_EQ(write(path("plain/file"), kSmall, {}), LSYS_ERR_MISSING);
    for (const std::string& name :
         {std::string(NAME_MAX + 1, 'n'), std::string(PATH_MAX, 'n'), std::string(PATH_MAX, 'n') + "/file"}) {
        EXPECT_EQ(read(path(name), kSmall, 1).result, LSYS_ERR_MISSING);
        EXPECT_EQ(write(path(name), kSmall, {}), LSYS_ERR_MISSING);
    }
    EXPECT_EQ(write(path(std::string(NAME_MAX, 'n')), kSmall, {}), LSYS_OK);

    putText(path("closed"), "1.0.0\nT,N\n");
    putText(path("readonly"), "1.0.0\nT,N\n");
    std::filesystem::create_directory(path("folder"));
    ASSERT_EQ(chmod(path("closed").c_str(), 0), 0);
    ASSERT_EQ(chmod(path("readonly").c_str(), 0444), 0);
    ASSERT_EQ(chmod(path("folder").c_str(), 0555), 0);
    putText(path("others"), "1.0.0\nT,N\n");
    ASSERT_EQ(chmod(path("others").c_str(), 0644), 0);
    const uid_t owner = getuid();
    EXPECT_EQ(inChild([&] {
                  constexpr unsigned kNobody = 65534;
                  if (getuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0))
                      return 1;
                  if (read(path("closed"), kSmall, 1).result != LSYS_ERR_PERMISSION)
                      return 2;
                  if (write(path("closed"), kSmall, {}) != LSYS_ERR_PERMISSION)
                      return 3;
                  if (write(path("readonly"), kSmall, {}) != LSYS_ERR_PERMISSION)
                      return 4;
                  if (getuid() != owner && write(path("others"), kSmall, {}) != LSYS_ERR_PERMISSION)
                      return 8;
                  if (write(path("folder/new"), kSmall, {}) != LSYS_ERR_PERMISSION)
                      return 5;
                  putText(path("own"), "");
                  if (write(path("own"), kSmall, {}) != LSYS_OK)
                      return 6;
                  chmod(path("own").c_str(), 0444);
                  if (write(path("own"), kSmall, {}) != LSYS_ERR_PERMISSION)
                      return 7;
                  return 0;
              }),
              0);
    EXPECT_EQ(textOf(path("readonly")), "1.0.0\nT,N\n");
}

// What a call leaves on stderr.
template <class Call>
std::string stderrOf(const std::string& path, Call call)
{
    inChild([&] {
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(file, STDERR_FILENO);
        call();
        return 0;
    });
    return textOf(path);
}

TEST_F(FormatTest, SaysWhyOnlyWhenAsked)
{
    const std::string log = path("stderr");
    const std::string file = path();
    putText(file, "1.0.0\nT,N\n\"a\nb\",1\nc,x\n");
    const auto reading = [&] { read(file, kSmall, 2); };
    unsetenv("LSYS_DEBUG");
    EXPECT_EQ(stderrOf(log, reading), "");
    setenv("LSYS_DEBUG", "1", 1);
    EXPECT_EQ(stderrOf(log, reading), "lsys: " + file + ":5:2: not a number\n");
    putText(file, "1.0.0\nT,N\na,1\nb,2\nc,3\n");
    EXPECT_EQ(stderrOf(log, reading), "lsys: " + file + ":5: too many records\n");
    putText(file, "1.0.1\nT,N\n");
    EXPECT_EQ(stderrOf(log, reading), "lsys: " + file + ":1: not the expected version\n");
    putText(file, "1.0.0\nT\n");
    EXPECT_EQ(stderrOf(log, reading), "lsys: " + file + ":2:1: wrong number of columns\n");
    putText(file, "1.0.0\nT,N\na,256\n");
    EXPECT_EQ(stderrOf(log, reading), "lsys: " + file + ":3:2: number out of range\n");
    putText(file, "1.0.0\nT,N\na\"b,1\n");
    EXPECT_EQ(stderrOf(log, reading), "lsys: " + file + ":3:1: bad quoting\n");
    putText(file, "1.0.0\nT,N\na,1");
    EXPECT_EQ(stderrOf(log, reading),
              "lsys: " + file + ":3:2: cut short: no newline at the end of the file\n");
    putText(file, "1.0.0\nT,N\na\001,1\n");
    EXPECT_EQ(stderrOf(log, reading), "lsys: " + file + ":3:1: binary garbage\n");
    putText(file, "1.0.0\nT,N\na,1\n");
    EXPECT_EQ(stderrOf(log, reading), "");
    const auto failingWith = [&](int error) {
        return [&, error] {
            hooks::s_onCall = [=](const std::string& call) { return call == "read" ? error : 0; };
            read(file, kSmall, 2);
        };
    };
    EXPECT_EQ(stderrOf(log, failingWith(EIO)), "lsys: " + file + ":1: Input/output error\n");
    EXPECT_EQ(stderrOf(log, failingWith(9999)), "lsys: " + file + ":1: unknown system error\n");
    EXPECT_EQ(stderrOf(log,
                       [&] {
                           write(file, kSmall, {'a', 0, 0, 0, 1, 'a', 'b', 'c', 'd', 1});
                       }),
              "lsys: " + file + ":4:1: text too long\n");
    EXPECT_EQ(stderrOf(log, [&] { read("/none/a\nb", kSmall, 1); }),
              "lsys: /none/a?b: No such file or directory\n");
    EXPECT_EQ(stderrOf(log, [&] { read(m_folder, kSmall, 1); }),
              "lsys: " + m_folder + ": not a regular file\n");
    EXPECT_EQ(stderrOf(log, [] { lsys_readCsvNewFmt(nullptr, "1", 1, 1, nullptr, 1, nullptr); }),
              "lsys: (null): the call's arguments describe no file\n");
    // However long the path is.
    const std::string line = stderrOf(log, [&] { read(std::string(10000, 'p'), kSmall, 1); });
    EXPECT_EQ(line, "lsys: " + std::string(4096, 'p') + ": File name too long\n");
    // The result is the same, whether the line can be written or not.
    for (const int error : {0, EIO}) {
        const int before = dup(STDERR_FILENO);
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDERR_FILENO);
        hooks::s_onCall = [=](const std::string& call) { return call == "write" ? error : 0; };
        const int32_t result = read(path("none"), kSmall, 1).result;
        hooks::reset();
        dup2(before, STDERR_FILENO);
        close(nowhere);
        close(before);
        EXPECT_EQ(result, LSYS_ERR_MISSING) << error;
    }
    // An interrupted line is written again.
    EXPECT_EQ(stderrOf(log,
                       [&] {
                           int interrupts = 3;
                           hooks::s_onCall = [&](const std::string& call) {
                               return call == "write" && interrupts-- > 0 ? EINTR : 0;
                           };
                           read(path("none"), kSmall, 1);
                       }),
              "lsys: " + path("none") + ": No such file or directory\n");
    unsetenv("LSYS_DEBUG");
}

} // namespace

// What was written is read back with the same count and the same bytes, whatever it is.
#include "settings_file.h"
#include "support/heap_count.h"

#include <algorithm>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

using namespace lsystest;

namespace {

class RoundTripTest : public FolderTest {};

bool isText(const LsysColumn& column)
{
    return column.ulType == 6;
}

// The record as it comes back: nothing between the fields and behind the NUL of a text.
Bytes normal(const Layout& layout, const Bytes& record)
{
    Bytes clean(record.size(), 0);
    for (const LsysColumn& column : layout.columns) {
        for (uint32_t i = 0; i < column.ulWidth; ++i) {
            const uint8_t byte = record[column.ulOffset + i];
            if (isText(column) && byte == 0)
                break;
            clean[column.ulOffset + i] = byte;
        }
    }
    return clean;
}

rc::Gen<LsysColumn> column()
{
    return rc::gen::exec([] {
        const auto type = *rc::gen::element<uint32_t>(0, 1, 2, 3, 4, 6);
        const auto width =
            type == 6 ? *rc::gen::oneOf(rc::gen::element<uint32_t>(8, 13), rc::gen::inRange<uint32_t>(1, 40))
                      : *rc::gen::element<uint32_t>(1, 2, 4);
        return LsysColumn{type, width, 0};
    });
}

// Fields anywhere in the record, in any order, with gaps.
rc::Gen<Layout> layout()
{
    return rc::gen::exec([] {
        Layout made{0, "", *rc::gen::nonEmpty(rc::gen::container<std::vector<LsysColumn>>(column()))};
        const auto order =
            *rc::gen::container<std::vector<uint32_t>>(made.columns.size(), rc::gen::arbitrary<uint32_t>());
        std::vector<size_t> places(made.columns.size());
        for (size_t i = 0; i < places.size(); ++i)
            places[i] = i;
        std::sort(places.begin(), places.end(), [&](size_t a, size_t b) { return order[a] < order[b]; });
        for (const size_t place : places) {
            made.recordSize += *rc::gen::weightedElement<uint32_t>({{4, 0}, {1, 1}, {1, 3}});
            made.columns[place].ulOffset = made.recordSize;
            made.recordSize += made.columns[place].ulWidth;
        }
        made.recordSize += *rc::gen::inRange<uint32_t>(0, 4);
        for (size_t i = 0; i < made.columns.size(); ++i)
            made.header += (i == 0 ? "C" : ",C") + std::to_string(i);
        return made;
    });
}

rc::Gen<uint8_t> textByte()
{
    return rc::gen::weightedOneOf<uint8_t>({
        {4, rc::gen::inRange<uint8_t>('0', 'z')},
        {2, rc::gen::element<uint8_t>(',', '"', '\n', '\r', ' ', '\t', 0, 0x7F)},
        {1, rc::gen::arbitrary<uint8_t>()},
    });
}

// Any bytes at all, but that every text has its NUL.
rc::Gen<Bytes> record(const Layout& of)
{
    return rc::gen::exec([of] {
        Bytes made = *rc::gen::container<Bytes>(of.recordSize, rc::gen::arbitrary<uint8_t>());
        for (const LsysColumn& described : of.columns) {
            if (!isText(described))
                continue;
            const Bytes text = *rc::gen::container<Bytes>(described.ulWidth, textByte());
            std::copy(text.begin(), text.end(), made.begin() + described.ulOffset);
            made[described.ulOffset + *rc::gen::inRange<uint32_t>(0, described.ulWidth)] = 0;
        }
        return made;
    });
}

void comesBack(const std::string& path, const Layout& of, const std::vector<Bytes>& records)
{
    Bytes written;
    Bytes expected;
    for (const Bytes& each : records) {
        written.insert(written.end(), each.begin(), each.end());
        const Bytes clean = normal(of, each);
        expected.insert(expected.end(), clean.begin(), clean.end());
    }
    RC_ASSERT(write(path, of, written) == LSYS_OK);
    const Read back = read(path, of, static_cast<uint32_t>(records.size()));
    RC_ASSERT(back.result == static_cast<int32_t>(records.size()));
    RC_ASSERT(back.records == expected);
    // Written again, the file is the same byte for byte.
    const std::string text = textOf(path);
    RC_ASSERT(write(path, of, back.records) == LSYS_OK);
    RC_ASSERT(textOf(path) == text);
}

RC_GTEST_FIXTURE_PROP(RoundTripTest, AnyRecordsInAnyLayout, ())
{
    const Layout of = *layout();
    comesBack(path(), of, *rc::gen::container<std::vector<Bytes>>(record(of)));
}

// The shapes of a meter's files, each as full as it gets.
struct Shape {
    const char* name;
    uint32_t records;
    Layout layout;
};

const std::vector<Shape> kShapes = {
    {"power off",
     1,
     {7, "A,B,C,D,E,F,G", {{3, 1, 0}, {3, 1, 1}, {3, 1, 2}, {3, 1, 3}, {3, 1, 4}, {3, 1, 5}, {3, 1, 6}}}},
    {"list", 140, {15, "NO,ENBFLG,FILE_NAME", {{3, 1, 0}, {3, 1, 1}, {6, 13, 2}}}},
    {"set",
     324,
     {28,
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
       {3, 1, 25}}}},
    {"plan", 1001, {12, "CH_NO,CENT_FREQ", {{6, 8, 0}, {3, 4, 8}}}},
    {"satellite plan", 32, {16, "WAVE,CH_NO,CENT_FREQ", {{3, 1, 0}, {6, 8, 4}, {3, 4, 12}}}},
    {"conversion", 28, {6, "BAND,BDSYS,BDSYS_TUNE", {{3, 1, 4}, {3, 2, 0}, {3, 2, 2}}}},
    {"conversion of CATV", 28, {8, "BDSYS(CATV),MOD,BDSYS_TUNE", {{3, 2, 4}, {3, 4, 0}, {3, 2, 6}}}},
    {"measurement management",
     48,
     {68,
      "SYNC,I0,D0,S0,N0,L0,J0,T0,I1,D1,S1,N1,L1,J1,T1,I2,D2,S2,N2,L2,J2,T2,I3,D3,S3,N3,L3,J3,T3",
      {{4, 4, 0},  {3, 1, 4},  {0, 1, 5},  {3, 1, 6},  {3, 4, 8},  {3, 4, 12}, {1, 2, 16}, {1, 2, 18},
       {3, 1, 20}, {0, 1, 21}, {3, 1, 22}, {3, 4, 24}, {3, 4, 28}, {1, 2, 32}, {1, 2, 34}, {3, 1, 36},
       {0, 1, 37}, {3, 1, 38}, {3, 4, 40}, {3, 4, 44}, {1, 2, 48}, {1, 2, 50}, {3, 1, 52}, {0, 1, 53},
       {3, 1, 54}, {3, 4, 56}, {3, 4, 60}, {1, 2, 64}, {1, 2, 66}}}},
};

RC_GTEST_FIXTURE_PROP(RoundTripTest, TheShapesOfAMeter, ())
{
    const Shape& shape = *rc::gen::elementOf(kShapes);
    RC_TAG(std::string(shape.name));
    const auto count = *rc::gen::inRange<uint32_t>(0, std::min(shape.records, 60U) + 1);
    comesBack(path(), shape.layout, *rc::gen::container<std::vector<Bytes>>(count, record(shape.layout)));
}

// Every shape at its full size, with the longest numbers and texts, and no memory asked for.
TEST_F(RoundTripTest, TheShapesOfAMeterInFull)
{
    for (const Shape& shape : kShapes) {
        const Layout& of = shape.layout;
        Bytes records(size_t{shape.records} * of.recordSize, 0xFF);
        for (uint32_t i = 0; i < shape.records; ++i) {
            for (const LsysColumn& each : of.columns) {
                if (isText(each))
                    records[size_t{i} * of.recordSize + each.ulOffset + each.ulWidth - 1] = 0;
            }
        }
        Bytes expected;
        for (uint32_t i = 0; i < shape.records; ++i) {
            const auto from = records.begin() + static_cast<ptrdiff_t>(size_t{i} * of.recordSize);
            const Bytes clean = normal(of, Bytes(from, from + of.recordSize));
            expected.insert(expected.end(), clean.begin(), clean.end());
        }
        const std::string file = path();
        Bytes back(records.size(), kUntouched);

        const int64_t before = vx63test::t_heapCalls;
        const int32_t written = lsys_writeCsvNewFmt(file.c_str(), "1.0.0", of.header.c_str(), shape.records,
                                                    static_cast<uint32_t>(of.columns.size()), records.data(),
                                                    of.recordSize, of.columns.data());
        const int32_t got =
            lsys_readCsvNewFmt(file.c_str(), "1.0.0", shape.records, static_cast<uint32_t>(of.columns.size()),
                               back.data(), of.recordSize, of.columns.data());
        const int32_t missing =
            lsys_readCsvNewFmt("/none", "1.0.0", 1, 1, back.data(), of.recordSize, of.columns.data());
        EXPECT_EQ(vx63test::t_heapCalls, before) << shape.name;
        EXPECT_EQ(written, LSYS_OK) << shape.name;
        EXPECT_EQ(got, static_cast<int32_t>(shape.records)) << shape.name;
        EXPECT_EQ(missing, LSYS_ERR_MISSING);
        EXPECT_TRUE(back == expected) << shape.name;
    }
}

} // namespace

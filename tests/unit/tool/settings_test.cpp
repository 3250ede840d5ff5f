// Names and values of the settings files, as the tool takes and shows them.
#include "common/failure.h"
#include "libvx63.h"
#include "settings/file.h"
#include "settings/meaning.h"
#include "settings/name.h"
#include "settings/record.h"

#include <gtest/gtest.h>

#include <vector>

using namespace tool;

namespace {

TEST(SettingsName, EveryFileHasItsName)
{
    const char* const kNames[] = {
        "sys_set/powoff",
        "sys_set/volume",
        "sys_set/brightness",
        "meas_set/local_freq",
        "meas_set/thrd",
        "meas_set/cnrmer",
        "meas_set/catv_freq",
        "meas_set/cable_loss",
        "meas_set/cable_loss_enb",
        "meas_set/input",
        "meas_set/catv_mod",
        "meas_set/dc_out",
        "meas_set/opt_meas",
        "meas_set/consta_num",
        "user_set/NAME",
        "user_set/list",
        "ch_set/uhf",
        "ch_set/bs",
        "ch_set/cs",
        "ch_set/sccb",
        "ch_set/sccc",
        "ch_set/jsat3a",
        "ch_set/jsat4b",
        "ch_set/catv_all",
        "ch_set/catv_90_470mhz",
        "ch_set/catv_470_1002mhz",
        "ch_set/skyp",
        "ch_set/pilot",
        "ch_set/lte",
        "ch_set/fm",
        "meas_set/manu_bdsys_mod",
        "meas_set/bdsys_conv",
        "meas_set/catv_bdsys_conv",
        "ch_set/catv_up_stream",
        "pmeas_set/pmeas_mng",
        "logger_set/NAME",
        "logger_set/list",
        "ch_set/jsat3a_antenna",
        "ch_set/jsat4b_antenna",
        "ch_set/fm_def",
        "ch_set/catv_up_stream_def",
        "ch_set/bs_cs",
        "user_set_usb1/NAME",
        "user_set_usb1/list",
        "user_set_usb2/NAME",
        "user_set_usb2/list",
        "logger_set_usb1/NAME",
        "logger_set_usb1/list",
        "logger_set_usb2/NAME",
        "logger_set_usb2/list",
    };
    ASSERT_EQ(std::size(kNames), 50u);
    for (uint32_t id = 0; id < 50; ++id) {
        EXPECT_EQ(nameOf({id, kAnySet}), kNames[id]);
        if (kindOf(id) == FileKind::set)
            continue;
        EXPECT_EQ(fileNamed("FILE", kNames[id]).fileId, id);
        EXPECT_EQ(fileNamed("FILE", std::to_string(id)).fileId, id);
    }
}

TEST(SettingsName, OtherWaysToNameAFile)
{
    EXPECT_EQ(fileNamed("FILE", "fm").fileId, 29u);
    EXPECT_EQ(fileNamed("FILE", "CH_SET/Fm").fileId, 29u);
    EXPECT_EQ(fileNamed("FILE", "0x1D").fileId, 29u);
    EXPECT_EQ(fileNamed("FILE", "ch_set/channel_setting_file_fm.csv").fileId, 29u);
    EXPECT_EQ(fileNamed("FILE", "/usr/local/bin/ch_set/channel_setting_file_fm.csv").fileId, 29u);
    const FileRef set = fileNamed("FILE", "/usr/local/bin/logger_set_usb2/Tokyo.csv");
    EXPECT_EQ(set.fileId, 48u);
    EXPECT_EQ(set.set, "Tokyo");
    EXPECT_EQ(pathOf(set), "/usr/local/bin/logger_set_usb2/Tokyo.csv");
    EXPECT_EQ(nameOf(set), "logger_set_usb2/Tokyo");
}

std::string refusal(const std::string& text)
{
    try {
        static_cast<void>(fileNamed("FILE", text));
    } catch (const WrongUsage& error) {
        return error.what();
    }
    return "";
}

TEST(SettingsName, WhatIsNoNameTellsTheCandidates)
{
    EXPECT_EQ(refusal("list"), "FILE: 'list' can mean user_set/list, logger_set/list, user_set_usb1/list, "
                               "user_set_usb2/list, logger_set_usb1/list, logger_set_usb2/list");
    EXPECT_EQ(refusal("ch_set/jsat"), "FILE: 'ch_set/jsat' is no settings file; there are ch_set/jsat3a, "
                                      "ch_set/jsat4b, ch_set/jsat3a_antenna, ch_set/jsat4b_antenna");
    EXPECT_EQ(refusal("sys_set/loudness"), "FILE: 'sys_set/loudness' is no settings file; there are "
                                           "sys_set/powoff, sys_set/volume, sys_set/brightness");
    EXPECT_EQ(refusal("50"), "FILE: '50' is no settings file, which 'vx63 settings list' tells");
    EXPECT_EQ(refusal(""), "FILE: '' is no settings file, which 'vx63 settings list' tells");
    EXPECT_EQ(refusal("14"), "FILE: 14 is a folder of setting sets; give user_set/NAME");
    EXPECT_EQ(refusal("user_set/1234567890123"),
              "FILE: '1234567890123' is no name of a set: it has 13 bytes, more than 12");
    EXPECT_NE(refusal("user_set/../x"), "");
}

TEST(SettingsName, NamesOfSets)
{
    EXPECT_FALSE(setNameFault("A"));
    EXPECT_FALSE(setNameFault("123456789012"));
    EXPECT_FALSE(setNameFault("a b,c"));
    EXPECT_FALSE(setNameFault("\xE6\x9D\xB1\xE4\xBA\xAC")); // two characters of three bytes
    for (const char* name :
         {"", "1234567890123", "a/b", "a\\b", ".a", "..", "a\nb", "a\tb", "a\x1B", "a\xFF"})
        EXPECT_TRUE(setNameFault(name)) << name;
}

constexpr vx63::settings::Column kByte{"B", vx63::settings::kUnsigned, 1, 1};
constexpr vx63::settings::Column kWord{"W", vx63::settings::kJudgement, 2, 2};
constexpr vx63::settings::Column kLong{"L", vx63::settings::kUnsigned, 4, 4};
constexpr vx63::settings::Column kSignedLong{"S", vx63::settings::kSigned, 4, 4};
constexpr vx63::settings::Column kName{"N", vx63::settings::kText, 8, 0};

TEST(SettingsRecord, ValuesGoInAndComeOut)
{
    const struct {
        const vx63::settings::Column& column;
        const char* text;
        std::vector<uint8_t> record;
    } kCases[] = {
        {kByte, "255", {9, 255, 9, 9, 9, 9, 9, 9}},
        {kWord, "513", {9, 9, 1, 2, 9, 9, 9, 9}},
        {kLong, "4294967295", {9, 9, 9, 9, 255, 255, 255, 255}},
        {kSignedLong, "-4", {9, 9, 9, 9, 252, 255, 255, 255}},
        {kSignedLong, "-2147483648", {9, 9, 9, 9, 0, 0, 0, 128}},
        {kSignedLong, "2147483647", {9, 9, 9, 9, 255, 255, 255, 127}},
        {kName, "C13", {'C', '1', '3', 0, 0, 0, 0, 0}},
        {kName, "1234567", {'1', '2', '3', '4', '5', '6', '7', 0}},
        {kName, "", {0, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (const auto& test : kCases) {
        std::vector<uint8_t> record(8, 9);
        EXPECT_FALSE(storeCell(test.column, record.data(), test.text));
        EXPECT_EQ(record, test.record) << test.text;
        EXPECT_EQ(cellText(test.column, record.data()), test.text);
    }
}

TEST(SettingsRecord, WhatDoesNotFitIsRefused)
{
    const struct {
        const vx63::settings::Column& column;
        const char* text;
        const char* why;
    } kCases[] = {
        {kByte, "256", "'256' is not a whole number from 0 to 255"},
        {kByte, "-1", "'-1' is not a whole number from 0 to 255"},
        {kByte, "", "'' is not a whole number from 0 to 255"},
        {kByte, "1.5", "'1.5' is not a whole number from 0 to 255"},
        {kByte, "99999999999999999999", "'99999999999999999999' is not a whole number from 0 to 255"},
        {kByte, "0xFFFFFFFFFFFFFFFF", "'0xFFFFFFFFFFFFFFFF' is not a whole number from 0 to 255"},
        {kWord, "65536", "'65536' is not a whole number from 0 to 65535"},
        {kLong, "4294967296", "'4294967296' is not a whole number from 0 to 4294967295"},
        {kSignedLong, "2147483648", "'2147483648' is not a whole number from -2147483648 to 2147483647"},
        {kName, "12345678", "'12345678' is longer than 7 bytes"},
        {kName, "a\n", "'a\n' is not printable"},
    };
    for (const auto& test : kCases) {
        std::vector<uint8_t> record(8, 9);
        EXPECT_EQ(storeCell(test.column, record.data(), test.text), test.why);
        EXPECT_EQ(record, std::vector<uint8_t>(8, 9));
    }
}

TEST(SettingsRecord, ColumnsAreFoundInAnyCase)
{
    const vx63::settings::File& volume = vx63::settings::kFiles[VX63_SET_FILE_VOLUME];
    ASSERT_NE(columnNamed(volume, "volume_Sel4"), nullptr);
    EXPECT_EQ(columnNamed(volume, "volume_Sel4")->offset, 3u);
    EXPECT_EQ(columnNamed(volume, "VOL"), nullptr);
    EXPECT_EQ(headerOf(volume), "VOLUME_SEL1,VOLUME_SEL2,VOLUME_SEL3,VOLUME_SEL4,VOLUME");
}

TEST(SettingsMeaning, EveryFactoryValueHasOne)
{
    unsigned tables = 0;
    for (const vx63::settings::File& file : vx63::settings::kFiles) {
        if (kindOf(file.fileId) != FileKind::ordinary)
            continue;
        ++tables;
        const Contents contents = factoryContents(file.fileId);
        EXPECT_EQ(contents.records, file.rows);
        EXPECT_EQ(meaninglessValues(file.fileId, contents), std::vector<std::string>()) << file.path;
    }
    EXPECT_EQ(tables, 38u);
}

TEST(SettingsMeaning, EveryColumnAndFileTellsIts)
{
    for (const vx63::settings::File& file : vx63::settings::kFiles) {
        EXPECT_STRNE(file.purpose, "") << file.path;
        for (uint32_t i = 0; i < file.columnCount; ++i)
            EXPECT_NE(file.columns[i].meaning, "") << file.columns[i].name;
    }
}

TEST(SettingsMeaning, WhatHasOneAndWhatHasNot)
{
    const struct {
        uint32_t fileId;
        const char* column;
        std::vector<const char*> good;
        std::vector<const char*> bad;
    } kCases[] = {
        {VX63_SET_FILE_POWOFF, "POWER_OFF", {"0", "255"}, {}},
        {VX63_SET_FILE_VOLUME, "VOLUME", {"0", "3"}, {"4", "9"}},
        {VX63_SET_FILE_BRIGHTNESS, "BRIGHTNESS", {"1", "3"}, {"0", "4"}},
        {VX63_SET_FILE_LOCAL_FREQ, "LOCAL_FREQ1", {"0", "1", "22000000", "4294967295"}, {"22000001"}},
        {VX63_SET_FILE_LOCAL_FREQ, "WAVE", {"0", "3"}, {"4"}},
        {VX63_SET_FILE_LOCAL_FREQ, "BAND", {"0", "15"}, {"16"}},
        {VX63_SET_FILE_THRD, "SPEC", {"0", "6", "9", "10"}, {"7", "8", "11"}},
        {VX63_SET_FILE_THRD, "MODULATION", {"0", "1", "248", "13563"}, {"4", "5", "2048", "65536"}},
        {VX63_SET_FILE_THRD, "LV_LOW", {"-200", "1300"}, {"-201", "1301"}},
        {VX63_SET_FILE_THRD, "CN_LOW", {"0", "600"}, {"601"}},
        {VX63_SET_FILE_THRD, "BER_LOW_EXP", {"-99", "0"}, {"-100", "1"}},
        {VX63_SET_FILE_CNRMER, "CNRMER", {"0", "1", "255"}, {"2", "254"}},
        {VX63_SET_FILE_CABLE_LOSS, "FREQ", {"10000", "3224000"}, {"0", "9999", "3224001"}},
        {VX63_SET_FILE_CABLE_LOSS_ENB, "CORRECTION_ENB", {"0", "1"}, {"2"}},
        {VX63_SET_FILE_INPUT, "INPUT", {"0", "1"}, {"2"}},
        {VX63_SET_FILE_DC_OUT, "OTHER", {"0", "4"}, {"5"}},
        {VX63_SET_FILE_OPT_MEAS, "OPT_MEAS_SEL1", {"800", "1700"}, {"0", "799", "1701"}},
        {VX63_SET_FILE_CONSTA_NUM, "CONSTA_NUM", {"1000", "2000", "4000"}, {"0", "3000"}},
        {VX63_SET_FILE_USER_SET, "CENTER_FREQ", {"0", "10000", "22000000"}, {"1", "9999", "22000001"}},
        {VX63_SET_FILE_USER_LIST, "ENBFLG", {"0", "1"}, {"2"}},
        {VX63_SET_FILE_UHF, "CENT_FREQ", {"10000", "3224000"}, {"0", "9999", "3224001"}},
        {VX63_SET_FILE_BS, "CENT_FREQ", {"11727480", "22000000"}, {"0", "22000001"}},
        {VX63_SET_FILE_LTE, "BAND_WIDE", {"1", "100000"}, {"0", "100001"}},
        {VX63_SET_FILE_FM_DEF, "CENT_FREQ", {"0", "10000"}, {"1", "9999"}},
        {VX63_SET_FILE_CATV_UP_STREAM_DEF, "CENT_FREQ", {"0", "10000"}, {"1"}},
    };
    for (const auto& test : kCases) {
        const vx63::settings::File& file = vx63::settings::kFiles[test.fileId];
        const vx63::settings::Column* column = columnNamed(file, test.column);
        ASSERT_NE(column, nullptr) << test.column;
        std::vector<uint8_t> record(file.dataSize);
        for (const bool isGood : {true, false})
            for (const char* value : isGood ? test.good : test.bad) {
                ASSERT_FALSE(storeCell(*column, record.data(), value));
                EXPECT_EQ(meaningFault(*column, record.data()).has_value(), !isGood)
                    << file.path << " " << test.column << " " << value;
            }
    }
}

} // namespace

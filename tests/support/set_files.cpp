#include "support/set_files.h"

#include "libvx63.h"

#include <array>
#include <sstream>
#include <stdexcept>

namespace vx63test {
namespace {

struct Row {
    uint32_t id;
    uint32_t constant; // its name in the public header
    const char* path;
    uint32_t columnCount;
    uint32_t recordSize;
    uint32_t rows;
    uint32_t defaultSize;
};

constexpr Row kRows[] = {
    {0, VX63_SET_FILE_POWOFF, "sys_set/system_setting_file_powoff.csv", 7, 7, 1, 7},                      //
    {1, VX63_SET_FILE_VOLUME, "sys_set/system_setting_file_volume.csv", 5, 5, 1, 5},                      //
    {2, VX63_SET_FILE_BRIGHTNESS, "sys_set/system_setting_file_brightness.csv", 4, 4, 1, 4},              //
    {3, VX63_SET_FILE_LOCAL_FREQ, "meas_set/measrement_setting_file_local_freq.csv", 8, 28, 12, 336},     //
    {4, VX63_SET_FILE_THRD, "meas_set/measrement_setting_file_thrd.csv", 23, 88, 24, 2112},               //
    {5, VX63_SET_FILE_CNRMER, "meas_set/measrement_setting_file_cnrmer.csv", 3, 3, 15, 45},               //
    {6, VX63_SET_FILE_CATV_FREQ, "meas_set/measrement_setting_file_catv_freq.csv", 8, 28, 4, 112},        //
    {7, VX63_SET_FILE_CABLE_LOSS, "meas_set/measrement_setting_file_cable_loss.csv", 2, 8, 4, 32},        //
    {8, VX63_SET_FILE_CABLE_LOSS_ENB, "meas_set/measrement_setting_file_cable_loss_enb.csv", 1, 1, 1, 1}, //
    {9, VX63_SET_FILE_INPUT, "meas_set/measrement_setting_file_input.csv", 3, 3, 1, 3},                   //
    {10, VX63_SET_FILE_CATV_MOD, "meas_set/measrement_setting_file_catv_mod.csv", 3, 12, 1, 12},          //
    {11, VX63_SET_FILE_DC_OUT, "meas_set/measrement_setting_file_dc_out.csv", 10, 10, 3, 30},             //
    {12, VX63_SET_FILE_OPT_MEAS, "meas_set/measrement_setting_file_opt_meas.csv", 3, 12, 1, 12},          //
    {13, VX63_SET_FILE_CONSTA_NUM, "meas_set/measrement_setting_file_consta_num.csv", 4, 16, 1, 16},      //
    {14, VX63_SET_FILE_USER_SET, "user_set/%s.csv", 10, 28, 324, 0},                                      //
    {15, VX63_SET_FILE_USER_LIST, "user_set/user_setting_file_list.csv", 3, 15, 140, 0},                  //
    {16, VX63_SET_FILE_UHF, "ch_set/channel_setting_file_uhf_6mhz.csv", 2, 12, 40, 480},                  //
    {17, VX63_SET_FILE_BS, "ch_set/channel_setting_file_bs_34.5mhz.csv", 3, 16, 24, 384},                 //
    {18, VX63_SET_FILE_CS, "ch_set/channel_setting_file_cs_34.5mhz.csv", 3, 16, 26, 416},                 //
    {19, VX63_SET_FILE_SCCB, "ch_set/channel_setting_file_sccb_27mhz.csv", 3, 16, 23, 368},               //
    {20, VX63_SET_FILE_SCCC, "ch_set/channel_setting_file_sccc_27mhz.csv", 3, 16, 24, 384},               //
    {21, VX63_SET_FILE_JSAT3A, "ch_set/channel_setting_file_jsat3a_27mhz.csv", 3, 16, 28, 448},           //
    {22, VX63_SET_FILE_JSAT4B, "ch_set/channel_setting_file_jsat4b_27mhz.csv", 3, 16, 32, 512},           //
    {23, VX63_SET_FILE_CATV_ALL, "ch_set/channel_setting_file_catv_all_6mhz.csv", 3, 16, 150, 2400},      //
    {24, VX63_SET_FILE_CATV_90_470MHZ, "ch_set/channel_setting_file_catv_90_470mhz_6mhz.csv", 3, 16, 62,
     992}, //
    {25, VX63_SET_FILE_CATV_470_1002MHZ, "ch_set/channel_setting_file_catv_470_1002mhz_6mhz.csv", 3, 16, 88,
     1408},                                                                                  //
    {26, VX63_SET_FILE_SKYP, "ch_set/channel_setting_file_skyp_6mhz.csv", 2, 12, 113, 1356}, //
    {27, VX63_SET_FILE_PILOT, "ch_set/channel_setting_file_pilot.csv", 2, 12, 20, 240},      //
    {28, VX63_SET_FILE_LTE, "ch_set/channel_setting_file_lte.csv", 3, 16, 6, 96},            //
    {29, VX63_SET_FILE_FM, "ch_set/channel_setting_file_fm.csv", 2, 12, 251, 3012},          //
    {30, VX63_SET_FILE_MANU_BDSYS_MOD, "meas_set/measrement_setting_file_manu_bdsys_mod.csv", 2, 8, 23,
     184},                                                                                            //
    {31, VX63_SET_FILE_BDSYS_CONV, "meas_set/measrement_setting_file_bdsys_conv.csv", 3, 6, 28, 168}, //
    {32, VX63_SET_FILE_CATV_BDSYS_CONV, "meas_set/measrement_setting_file_catv_bdsys_conv.csv", 3, 8, 5,
     40}, //
    {33, VX63_SET_FILE_CATV_UP_STREAM, "ch_set/channel_setting_file_catv_up_stream.csv", 2, 12, 1001,
     12012},                                                                                       //
    {34, VX63_SET_FILE_PMEAS_MNG, "pmeas_set/pmeas_setting_file_pmeas_mng.csv", 29, 68, 48, 3264}, //
    {35, VX63_SET_FILE_LOGGER_SET, "logger_set/%s.csv", 10, 28, 324, 0},                           //
    {36, VX63_SET_FILE_LOGGER_LIST, "logger_set/logger_setting_file_list.csv", 3, 15, 140, 0},     //
    {37, VX63_SET_FILE_JSAT3A_ANTENNA, "ch_set/channel_setting_file_jsat3a_antenna_27mhz.csv", 3, 16, 16,
     256}, //
    {38, VX63_SET_FILE_JSAT4B_ANTENNA, "ch_set/channel_setting_file_jsat4b_antenna_27mhz.csv", 3, 16, 16,
     256},                                                                                //
    {39, VX63_SET_FILE_FM_DEF, "ch_set/channel_setting_file_fm_def.csv", 2, 12, 12, 144}, //
    {40, VX63_SET_FILE_CATV_UP_STREAM_DEF, "ch_set/channel_setting_file_catv_up_stream_def.csv", 2, 12, 12,
     144},                                                                                               //
    {41, VX63_SET_FILE_BS_CS, "ch_set/channel_setting_file_bs_cs_34.5mhz.csv", 3, 16, 50, 800},          //
    {42, VX63_SET_FILE_USER_SET_USB1, "user_set_usb1/%s.csv", 10, 28, 324, 0},                           //
    {43, VX63_SET_FILE_USER_LIST_USB1, "user_set_usb1/user_setting_file_list.csv", 3, 15, 140, 0},       //
    {44, VX63_SET_FILE_USER_SET_USB2, "user_set_usb2/%s.csv", 10, 28, 324, 0},                           //
    {45, VX63_SET_FILE_USER_LIST_USB2, "user_set_usb2/user_setting_file_list.csv", 3, 15, 140, 0},       //
    {46, VX63_SET_FILE_LOGGER_SET_USB1, "logger_set_usb1/%s.csv", 10, 28, 324, 0},                       //
    {47, VX63_SET_FILE_LOGGER_LIST_USB1, "logger_set_usb1/logger_setting_file_list.csv", 3, 15, 140, 0}, //
    {48, VX63_SET_FILE_LOGGER_SET_USB2, "logger_set_usb2/%s.csv", 10, 28, 324, 0},                       //
    {49, VX63_SET_FILE_LOGGER_LIST_USB2, "logger_set_usb2/logger_setting_file_list.csv", 3, 15, 140, 0}, //
};

// The ids of the files that share a line; then, in the order of the columns, name type/width/offset.
constexpr char kColumns[] = R"(
0 | POWER_OFF_SEL1 3/1/0; POWER_OFF_SEL2 3/1/1; POWER_OFF_SEL3 3/1/2; POWER_OFF_SEL4 3/1/3; POWER_OFF_SEL5 3/1/4; POWER_OFF_SEL6 3/1/5; POWER_OFF 3/1/6
1 | VOLUME_SEL1 3/1/0; VOLUME_SEL2 3/1/1; VOLUME_SEL3 3/1/2; VOLUME_SEL4 3/1/3; VOLUME 3/1/4
2 | BRIGHTNESS_SEL1 3/1/0; BRIGHTNESS_SEL2 3/1/1; BRIGHTNESS_SEL3 3/1/2; BRIGHTNESS 3/1/3
3 | BAND 3/1/0; WAVE 3/1/1; LOCAL_FREQ1 3/4/4; LOCAL_FREQ2 3/4/8; LOCAL_FREQ3 3/4/12; LOCAL_FREQ4 3/4/16; LOCAL_FREQ5 3/4/20; LOCAL_FREQ6 3/4/24
4 | BAND 3/1/0; SPEC 3/1/1; MODULATION 2/4/4; LV_MIN 4/4/8; LV_LOW 4/4/12; LV_HIGH 4/4/16; LV_MAX 4/4/20; MER_MIN 3/4/24; MER_LOW 3/4/28; MER_HIGH 3/4/32; MER_MAX 3/4/36; BER_MIN_MAN 3/4/40; BER_MIN_EXP 4/4/44; BER_LOW_MAN 3/4/48; BER_LOW_EXP 4/4/52; BER_HIGH_MAN 3/4/56; BER_HIGH_EXP 4/4/60; BER_MAX_MAN 3/4/64; BER_MAX_EXP 4/4/68; CN_MIN 3/4/72; CN_LOW 3/4/76; CN_HIGH 3/4/80; CN_MAX 3/4/84
5 | CNRMER_SEL1 3/1/0; CNRMER_SEL2 3/1/1; CNRMER 3/1/2
6 | SET_NO 3/1/0; MOD 2/4/4; FREQ_C24 3/4/8; FREQ_C25 3/4/12; FREQ_C26 3/4/16; FREQ_C27 3/4/20; DISP 3/1/24; USE 3/1/25
7 | FREQ 3/4/0; CORRECTION_VALUE 3/4/4
8 | CORRECTION_ENB 3/1/0
9 | INPUT_SEL1 3/1/0; INPUT_SEL2 3/1/1; INPUT 3/1/2
10 | MOD_SEL1 2/4/0; MOD_SEL2 2/4/4; MOD_SEL3 2/4/8
11 | DC_OUT_STAT 3/1/0; JCSAT3_H 3/1/1; JCSAT3_V 3/1/2; JCSAT4_H 3/1/3; JCSAT4_V 3/1/4; SCC-B_H 3/1/5; SCC-B_V 3/1/6; SCC-C_H 3/1/7; SCC-C_V 3/1/8; OTHER 3/1/9
12 | OPT_MEAS_SEL1 3/4/0; OPT_MEAS_SEL2 3/4/4; OPT_MEAS_SEL3 3/4/8
13 | CONSTA_NUM_SEL1 3/4/0; CONSTA_NUM_SEL2 3/4/4; CONSTA_NUM_SEL3 3/4/8; CONSTA_NUM 3/4/12
14, 42, 44 | NO 3/1/0; ENBFLG 3/1/1; BAND 3/1/2; SPEC 3/1/3; CH 6/8/4; CENTER_FREQ 3/4/12; MOD 2/4/16; LOCAL_FREQ 3/4/20; GETDATA_FLG 3/1/24; DC_OUT 3/1/25
15, 43, 45 | NO 3/1/0; ENBFLG 3/1/1; FILE_NAME 6/13/2
16 | CH_NO 6/8/0; CENT_FREQ 3/4/8
17, 18, 19, 20, 21, 22, 37, 38, 41 | WAVE 3/1/0; CH_NO 6/8/4; CENT_FREQ 3/4/12
23, 24, 25 | CH_NO 6/8/0; QAM_CENT_FREQ 3/4/8; OFDM_CENT_FREQ 3/4/12
26 | CH_NO 6/8/0; CENT_FREQ 3/4/8
27 | CH_NO 6/8/0; CENT_FREQ 3/4/8
28 | CH_NO 6/8/0; CENT_FREQ 3/4/8; BAND_WIDE 3/4/12
29 | CH_NO 6/8/0; CENT_FREQ 3/4/8
30 | BDSYS 3/2/0; MOD 3/4/4
31 | BAND 3/1/4; BDSYS 3/2/0; BDSYS_TUNE 3/2/2
32 | BDSYS(CATV) 3/2/4; MOD 3/4/0; BDSYS_TUNE 3/2/6
33 | CH_NO 6/8/0; CENT_FREQ 3/4/8
34 | NEXT_CH_SYNC 4/4/0; SINGLE0_ISMES 3/1/4; SINGLE0_MESDATA 0/1/5; SINGLE0_SAVEMETHOD 3/1/6; SINGLE0_TMNOSIGNAL 3/4/8; SINGLE0_TMLOCK 3/4/12; SINGLE0_JUDGEMESDATA 1/2/16; SINGLE0_JUDGESTATUS 1/2/18; SINGLE1_ISMES 3/1/20; SINGLE1_MESDATA 0/1/21; SINGLE1_SAVEMETHOD 3/1/22; SINGLE1_TMNOSIGNAL 3/4/24; SINGLE1_TMLOCK 3/4/28; SINGLE1_JUDGEMESDATA 1/2/32; SINGLE1_JUDGESTATUS 1/2/34; MULTI0_ISMES 3/1/36; MULTI0_MESDATA 0/1/37; MULTI0_SAVEMETHOD 3/1/38; MULTI0_TMNOSIGNAL 3/4/40; MULTI0_TMLOCK 3/4/44; MULTI0_JUDGEMESDATA 1/2/48; MULTI0_JUDGESTATUS 1/2/50; MULTI1_ISMES 3/1/52; MULTI1_MESDATA 0/1/53; MULTI1_SAVEMETHOD 3/1/54; MULTI1_TMNOSIGNAL 3/4/56; MULTI1_TMLOCK 3/4/60; MULTI1_JUDGEMESDATA 1/2/64; MULTI1_JUDGESTATUS 1/2/66
35, 46, 48 | NO 3/1/0; ENBFLG 3/1/1; BAND 3/1/2; SPEC 3/1/3; CH 6/8/4; CENTER_FREQ 3/4/12; MOD 2/4/16; LOCAL_FREQ 3/4/20; GETDATA_FLG 3/1/24; DC_OUT 3/1/25
36, 47, 49 | NO 3/1/0; ENBFLG 3/1/1; FILE_NAME 6/13/2
39 | CH_NO 6/8/0; CENT_FREQ 3/4/8
40 | CH_NO 6/8/0; CENT_FREQ 3/4/8
)";

std::array<SetFile, kSetFileCount> makeFiles()
{
    std::array<SetFile, kSetFileCount> files = {};
    for (const Row& row : kRows) {
        if (row.constant != row.id) {
            throw std::logic_error(row.path);
        }
        files.at(row.id) = {row.id,
                            std::string("/usr/local/bin/") + row.path,
                            row.columnCount,
                            row.recordSize,
                            row.rows,
                            row.defaultSize,
                            "",
                            {}};
    }
    std::istringstream lines(kColumns);
    for (std::string line; std::getline(lines, line);) {
        const size_t bar = line.find(" | ");
        if (bar == std::string::npos) {
            continue;
        }
        std::string header;
        std::vector<LsysColumn> columns;
        std::istringstream texts(line.substr(bar + 3));
        std::string name;
        for (char slash = 0; texts >> name;) {
            LsysColumn column = {};
            texts >> column.ulType >> slash >> column.ulWidth >> slash >> column.ulOffset;
            texts.ignore(1, ';');
            columns.push_back(column);
            header += (header.empty() ? "" : ",") + name;
        }
        std::istringstream ids(line.substr(0, bar));
        for (uint32_t id = 0; ids >> id; ids.ignore(1, ',')) {
            files.at(id).header = header;
            files.at(id).columns = columns;
        }
    }
    return files;
}

} // namespace

const SetFile& setFile(uint32_t id)
{
    static const std::array<SetFile, kSetFileCount> files = makeFiles();
    return files.at(id);
}

std::string pathOf(uint32_t id, std::string_view name)
{
    std::string path = setFile(id).path;
    const size_t place = path.find("%s");
    return place == std::string::npos ? path : path.replace(place, 2, name);
}

std::vector<uint8_t> records(uint32_t id, std::string_view lines)
{
    const SetFile& file = setFile(id);
    std::vector<uint8_t> bytes;
    std::istringstream in{std::string(lines)};
    for (std::string line; std::getline(in, line);) {
        std::istringstream cells(line);
        std::string cell;
        if (!(cells >> cell)) {
            continue; // an empty line
        }
        const size_t record = bytes.size();
        bytes.resize(record + file.recordSize);
        for (const LsysColumn& column : file.columns) {
            if (cells.fail()) {
                throw std::invalid_argument("too few cells: " + line);
            }
            uint8_t* const field = &bytes.at(record + column.ulOffset);
            if (column.ulType == 6) {
                for (size_t i = 0; i < cell.size(); ++i) {
                    field[i] = static_cast<uint8_t>(cell[i] == '_' ? ' ' : cell[i]);
                }
            } else {
                long long value = std::stoll(cell);
                for (uint32_t i = 0; i < column.ulWidth; ++i) {
                    field[i] = static_cast<uint8_t>(value & 0xFF);
                    value >>= 8;
                }
            }
            cells >> cell;
        }
        if (!cells.fail()) {
            throw std::invalid_argument("too many cells: " + line);
        }
    }
    return bytes;
}

} // namespace vx63test

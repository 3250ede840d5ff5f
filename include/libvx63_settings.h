// libvx63_settings.h: what the settings files of libvx63.h look like: where they lie, their records, their
// columns. For C++17 and later; data only, nothing to link.
//
//   const vx63::settings::File& file = vx63::settings::kFiles[VX63_SET_FILE_VOLUME];
//   std::vector<uint8_t> records(file.rows * file.dataSize);
//   vx63_readSetFile(file.fileId, records.data(), nullptr, 0);
//   const vx63::settings::Column& volume = file.columns[4]; // "VOLUME", at records[volume.offset]
//
// Numbers stand in a record in the byte order of the machine, which is little-endian.
#ifndef LIBVX63_SETTINGS_H
#define LIBVX63_SETTINGS_H

#include "libvx63.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vx63::settings {

// What a column holds, as the platform's CSV functions know it.
enum ColumnType : uint32_t {
    kMeasData = 0,   // selection of measurement data, 1 byte
    kJudgement = 1,  // judgement value, 2 bytes
    kModulation = 2, // modulation bit mask, 4 bytes
    kUnsigned = 3,   // 1, 2 or 4 bytes
    kSigned = 4,     // 4 bytes
    kText = 6,       // NUL-terminated inside the field, 8 or 13 bytes
};

// A column of a file; the field of a record that it fills.
struct Column {
    std::string_view name; // as in the header line of the file
    ColumnType type;       // what it holds
    uint32_t width;        // bytes
    uint32_t offset;       // in the record
};

// ---- The columns ----

// The columns of a file, in the order in which they stand in it.
inline constexpr Column kPowOffColumns[] = {
    {"POWER_OFF_SEL1", kUnsigned, 1, 0}, //
    {"POWER_OFF_SEL2", kUnsigned, 1, 1}, //
    {"POWER_OFF_SEL3", kUnsigned, 1, 2}, //
    {"POWER_OFF_SEL4", kUnsigned, 1, 3}, //
    {"POWER_OFF_SEL5", kUnsigned, 1, 4}, //
    {"POWER_OFF_SEL6", kUnsigned, 1, 5}, //
    {"POWER_OFF", kUnsigned, 1, 6},      //
};

inline constexpr Column kVolumeColumns[] = {
    {"VOLUME_SEL1", kUnsigned, 1, 0}, //
    {"VOLUME_SEL2", kUnsigned, 1, 1}, //
    {"VOLUME_SEL3", kUnsigned, 1, 2}, //
    {"VOLUME_SEL4", kUnsigned, 1, 3}, //
    {"VOLUME", kUnsigned, 1, 4},      //
};

inline constexpr Column kBrightnessColumns[] = {
    {"BRIGHTNESS_SEL1", kUnsigned, 1, 0}, //
    {"BRIGHTNESS_SEL2", kUnsigned, 1, 1}, //
    {"BRIGHTNESS_SEL3", kUnsigned, 1, 2}, //
    {"BRIGHTNESS", kUnsigned, 1, 3},      //
};

inline constexpr Column kLocalFreqColumns[] = {
    {"BAND", kUnsigned, 1, 0},         //
    {"WAVE", kUnsigned, 1, 1},         //
    {"LOCAL_FREQ1", kUnsigned, 4, 4},  //
    {"LOCAL_FREQ2", kUnsigned, 4, 8},  //
    {"LOCAL_FREQ3", kUnsigned, 4, 12}, //
    {"LOCAL_FREQ4", kUnsigned, 4, 16}, //
    {"LOCAL_FREQ5", kUnsigned, 4, 20}, //
    {"LOCAL_FREQ6", kUnsigned, 4, 24}, //
};

inline constexpr Column kThrdColumns[] = {
    {"BAND", kUnsigned, 1, 0},          //
    {"SPEC", kUnsigned, 1, 1},          //
    {"MODULATION", kModulation, 4, 4},  //
    {"LV_MIN", kSigned, 4, 8},          //
    {"LV_LOW", kSigned, 4, 12},         //
    {"LV_HIGH", kSigned, 4, 16},        //
    {"LV_MAX", kSigned, 4, 20},         //
    {"MER_MIN", kUnsigned, 4, 24},      //
    {"MER_LOW", kUnsigned, 4, 28},      //
    {"MER_HIGH", kUnsigned, 4, 32},     //
    {"MER_MAX", kUnsigned, 4, 36},      //
    {"BER_MIN_MAN", kUnsigned, 4, 40},  //
    {"BER_MIN_EXP", kSigned, 4, 44},    //
    {"BER_LOW_MAN", kUnsigned, 4, 48},  //
    {"BER_LOW_EXP", kSigned, 4, 52},    //
    {"BER_HIGH_MAN", kUnsigned, 4, 56}, //
    {"BER_HIGH_EXP", kSigned, 4, 60},   //
    {"BER_MAX_MAN", kUnsigned, 4, 64},  //
    {"BER_MAX_EXP", kSigned, 4, 68},    //
    {"CN_MIN", kUnsigned, 4, 72},       //
    {"CN_LOW", kUnsigned, 4, 76},       //
    {"CN_HIGH", kUnsigned, 4, 80},      //
    {"CN_MAX", kUnsigned, 4, 84},       //
};

inline constexpr Column kCnrMerColumns[] = {
    {"CNRMER_SEL1", kUnsigned, 1, 0}, //
    {"CNRMER_SEL2", kUnsigned, 1, 1}, //
    {"CNRMER", kUnsigned, 1, 2},      //
};

inline constexpr Column kCatvFreqColumns[] = {
    {"SET_NO", kUnsigned, 1, 0},    //
    {"MOD", kModulation, 4, 4},     //
    {"FREQ_C24", kUnsigned, 4, 8},  //
    {"FREQ_C25", kUnsigned, 4, 12}, //
    {"FREQ_C26", kUnsigned, 4, 16}, //
    {"FREQ_C27", kUnsigned, 4, 20}, //
    {"DISP", kUnsigned, 1, 24},     //
    {"USE", kUnsigned, 1, 25},      //
};

inline constexpr Column kCableLossColumns[] = {
    {"FREQ", kUnsigned, 4, 0},             //
    {"CORRECTION_VALUE", kUnsigned, 4, 4}, //
};

inline constexpr Column kCableLossEnbColumns[] = {
    {"CORRECTION_ENB", kUnsigned, 1, 0}, //
};

inline constexpr Column kInputColumns[] = {
    {"INPUT_SEL1", kUnsigned, 1, 0}, //
    {"INPUT_SEL2", kUnsigned, 1, 1}, //
    {"INPUT", kUnsigned, 1, 2},      //
};

inline constexpr Column kCatvModColumns[] = {
    {"MOD_SEL1", kModulation, 4, 0}, //
    {"MOD_SEL2", kModulation, 4, 4}, //
    {"MOD_SEL3", kModulation, 4, 8}, //
};

inline constexpr Column kDcOutColumns[] = {
    {"DC_OUT_STAT", kUnsigned, 1, 0}, //
    {"JCSAT3_H", kUnsigned, 1, 1},    //
    {"JCSAT3_V", kUnsigned, 1, 2},    //
    {"JCSAT4_H", kUnsigned, 1, 3},    //
    {"JCSAT4_V", kUnsigned, 1, 4},    //
    {"SCC-B_H", kUnsigned, 1, 5},     //
    {"SCC-B_V", kUnsigned, 1, 6},     //
    {"SCC-C_H", kUnsigned, 1, 7},     //
    {"SCC-C_V", kUnsigned, 1, 8},     //
    {"OTHER", kUnsigned, 1, 9},       //
};

inline constexpr Column kOptMeasColumns[] = {
    {"OPT_MEAS_SEL1", kUnsigned, 4, 0}, //
    {"OPT_MEAS_SEL2", kUnsigned, 4, 4}, //
    {"OPT_MEAS_SEL3", kUnsigned, 4, 8}, //
};

inline constexpr Column kConstaNumColumns[] = {
    {"CONSTA_NUM_SEL1", kUnsigned, 4, 0}, //
    {"CONSTA_NUM_SEL2", kUnsigned, 4, 4}, //
    {"CONSTA_NUM_SEL3", kUnsigned, 4, 8}, //
    {"CONSTA_NUM", kUnsigned, 4, 12},     //
};

inline constexpr Column kUserSetColumns[] = {
    {"NO", kUnsigned, 1, 0},           //
    {"ENBFLG", kUnsigned, 1, 1},       //
    {"BAND", kUnsigned, 1, 2},         //
    {"SPEC", kUnsigned, 1, 3},         //
    {"CH", kText, 8, 4},               //
    {"CENTER_FREQ", kUnsigned, 4, 12}, //
    {"MOD", kModulation, 4, 16},       //
    {"LOCAL_FREQ", kUnsigned, 4, 20},  //
    {"GETDATA_FLG", kUnsigned, 1, 24}, //
    {"DC_OUT", kUnsigned, 1, 25},      //
};

inline constexpr Column kUserListColumns[] = {
    {"NO", kUnsigned, 1, 0},     //
    {"ENBFLG", kUnsigned, 1, 1}, //
    {"FILE_NAME", kText, 13, 2}, //
};

inline constexpr Column kUhfColumns[] = {
    {"CH_NO", kText, 8, 0},         //
    {"CENT_FREQ", kUnsigned, 4, 8}, //
};

inline constexpr Column kSatelliteColumns[] = {
    {"WAVE", kUnsigned, 1, 0},       //
    {"CH_NO", kText, 8, 4},          //
    {"CENT_FREQ", kUnsigned, 4, 12}, //
};

inline constexpr Column kCatvColumns[] = {
    {"CH_NO", kText, 8, 0},               //
    {"QAM_CENT_FREQ", kUnsigned, 4, 8},   //
    {"OFDM_CENT_FREQ", kUnsigned, 4, 12}, //
};

inline constexpr Column kSkypColumns[] = {
    {"CH_NO", kText, 8, 0},         //
    {"CENT_FREQ", kUnsigned, 4, 8}, //
};

inline constexpr Column kPilotColumns[] = {
    {"CH_NO", kText, 8, 0},         //
    {"CENT_FREQ", kUnsigned, 4, 8}, //
};

inline constexpr Column kLteColumns[] = {
    {"CH_NO", kText, 8, 0},          //
    {"CENT_FREQ", kUnsigned, 4, 8},  //
    {"BAND_WIDE", kUnsigned, 4, 12}, //
};

inline constexpr Column kFmColumns[] = {
    {"CH_NO", kText, 8, 0},         //
    {"CENT_FREQ", kUnsigned, 4, 8}, //
};

inline constexpr Column kManuBdsysModColumns[] = {
    {"BDSYS", kUnsigned, 2, 0}, //
    {"MOD", kUnsigned, 4, 4},   //
};

inline constexpr Column kBdsysConvColumns[] = {
    {"BAND", kUnsigned, 1, 4},       //
    {"BDSYS", kUnsigned, 2, 0},      //
    {"BDSYS_TUNE", kUnsigned, 2, 2}, //
};

inline constexpr Column kCatvBdsysConvColumns[] = {
    {"BDSYS(CATV)", kUnsigned, 2, 4}, //
    {"MOD", kUnsigned, 4, 0},         //
    {"BDSYS_TUNE", kUnsigned, 2, 6},  //
};

inline constexpr Column kUpStreamColumns[] = {
    {"CH_NO", kText, 8, 0},         //
    {"CENT_FREQ", kUnsigned, 4, 8}, //
};

inline constexpr Column kPmeasMngColumns[] = {
    {"NEXT_CH_SYNC", kSigned, 4, 0},             //
    {"SINGLE0_ISMES", kUnsigned, 1, 4},          //
    {"SINGLE0_MESDATA", kMeasData, 1, 5},        //
    {"SINGLE0_SAVEMETHOD", kUnsigned, 1, 6},     //
    {"SINGLE0_TMNOSIGNAL", kUnsigned, 4, 8},     //
    {"SINGLE0_TMLOCK", kUnsigned, 4, 12},        //
    {"SINGLE0_JUDGEMESDATA", kJudgement, 2, 16}, //
    {"SINGLE0_JUDGESTATUS", kJudgement, 2, 18},  //
    {"SINGLE1_ISMES", kUnsigned, 1, 20},         //
    {"SINGLE1_MESDATA", kMeasData, 1, 21},       //
    {"SINGLE1_SAVEMETHOD", kUnsigned, 1, 22},    //
    {"SINGLE1_TMNOSIGNAL", kUnsigned, 4, 24},    //
    {"SINGLE1_TMLOCK", kUnsigned, 4, 28},        //
    {"SINGLE1_JUDGEMESDATA", kJudgement, 2, 32}, //
    {"SINGLE1_JUDGESTATUS", kJudgement, 2, 34},  //
    {"MULTI0_ISMES", kUnsigned, 1, 36},          //
    {"MULTI0_MESDATA", kMeasData, 1, 37},        //
    {"MULTI0_SAVEMETHOD", kUnsigned, 1, 38},     //
    {"MULTI0_TMNOSIGNAL", kUnsigned, 4, 40},     //
    {"MULTI0_TMLOCK", kUnsigned, 4, 44},         //
    {"MULTI0_JUDGEMESDATA", kJudgement, 2, 48},  //
    {"MULTI0_JUDGESTATUS", kJudgement, 2, 50},   //
    {"MULTI1_ISMES", kUnsigned, 1, 52},          //
    {"MULTI1_MESDATA", kMeasData, 1, 53},        //
    {"MULTI1_SAVEMETHOD", kUnsigned, 1, 54},     //
    {"MULTI1_TMNOSIGNAL", kUnsigned, 4, 56},     //
    {"MULTI1_TMLOCK", kUnsigned, 4, 60},         //
    {"MULTI1_JUDGEMESDATA", kJudgement, 2, 64},  //
    {"MULTI1_JUDGESTATUS", kJudgement, 2, 66},   //
};

inline constexpr Column kLoggerSetColumns[] = {
    {"NO", kUnsigned, 1, 0},           //
    {"ENBFLG", kUnsigned, 1, 1},       //
    {"BAND", kUnsigned, 1, 2},         //
    {"SPEC", kUnsigned, 1, 3},         //
    {"CH", kText, 8, 4},               //
    {"CENTER_FREQ", kUnsigned, 4, 12}, //
    {"MOD", kModulation, 4, 16},       //
    {"LOCAL_FREQ", kUnsigned, 4, 20},  //
    {"GETDATA_FLG", kUnsigned, 1, 24}, //
    {"DC_OUT", kUnsigned, 1, 25},      //
};

inline constexpr Column kLoggerListColumns[] = {
    {"NO", kUnsigned, 1, 0},     //
    {"ENBFLG", kUnsigned, 1, 1}, //
    {"FILE_NAME", kText, 13, 2}, //
};

inline constexpr Column kFmDefColumns[] = {
    {"CH_NO", kText, 8, 0},         //
    {"CENT_FREQ", kUnsigned, 4, 8}, //
};

inline constexpr Column kUpStreamDefColumns[] = {
    {"CH_NO", kText, 8, 0},         //
    {"CENT_FREQ", kUnsigned, 4, 8}, //
};

// ---- The files ----

// What is known of a file.
struct File {
    uint32_t fileId;       // VX63_SET_FILE_*
    const char* path;      // of a set: a format with one %s for the set's name
    uint32_t columnCount;  // columns of the file
    uint32_t dataSize;     // bytes of a record
    uint32_t rows;         // records of the file; of a set or a list: at most
    uint32_t defaultSize;  // bytes of the factory contents; 0 for sets and lists, which have none
    const Column* columns; // in the order in which they stand in the file

    // A row of kFiles.
    template <uint32_t kColumnCount>
    constexpr File(uint32_t id, const char* pathOfFile, uint32_t sizeOfRecord, uint32_t records,
                   uint32_t sizeOfDefault, const Column (&columnsOfFile)[kColumnCount])
        : fileId(id), path(pathOfFile), columnCount(kColumnCount), dataSize(sizeOfRecord), rows(records),
          defaultSize(sizeOfDefault), columns(columnsOfFile)
    {}
};

// The first line of every file.
inline constexpr char kVersion[] = "1.0.0";

// By file id. A row: id, path, bytes of a record, records, bytes of the factory contents, columns.
// "measrement" is how the meters spell it.
inline constexpr File kFiles[] = {
    {VX63_SET_FILE_POWOFF, "/usr/local/bin/sys_set/system_setting_file_powoff.csv", 7, 1, 7, kPowOffColumns},
    {VX63_SET_FILE_VOLUME, "/usr/local/bin/sys_set/system_setting_file_volume.csv", 5, 1, 5, kVolumeColumns},
    {VX63_SET_FILE_BRIGHTNESS, "/usr/local/bin/sys_set/system_setting_file_brightness.csv", 4, 1, 4,
     kBrightnessColumns},
    {VX63_SET_FILE_LOCAL_FREQ, "/usr/local/bin/meas_set/measrement_setting_file_local_freq.csv", 28, 12, 336,
     kLocalFreqColumns},
    {VX63_SET_FILE_THRD, "/usr/local/bin/meas_set/measrement_setting_file_thrd.csv", 88, 24, 2112,
     kThrdColumns},
    {VX63_SET_FILE_CNRMER, "/usr/local/bin/meas_set/measrement_setting_file_cnrmer.csv", 3, 15, 45,
     kCnrMerColumns},
    {VX63_SET_FILE_CATV_FREQ, "/usr/local/bin/meas_set/measrement_setting_file_catv_freq.csv", 28, 4, 112,
     kCatvFreqColumns},
    {VX63_SET_FILE_CABLE_LOSS, "/usr/local/bin/meas_set/measrement_setting_file_cable_loss.csv", 8, 4, 32,
     kCableLossColumns},
    {VX63_SET_FILE_CABLE_LOSS_ENB, "/usr/local/bin/meas_set/measrement_setting_file_cable_loss_enb.csv", 1, 1,
     1, kCableLossEnbColumns},
    {VX63_SET_FILE_INPUT, "/usr/local/bin/meas_set/measrement_setting_file_input.csv", 3, 1, 3,
     kInputColumns},
    {VX63_SET_FILE_CATV_MOD, "/usr/local/bin/meas_set/measrement_setting_file_catv_mod.csv", 12, 1, 12,
     kCatvModColumns},
    {VX63_SET_FILE_DC_OUT, "/usr/local/bin/meas_set/measrement_setting_file_dc_out.csv", 10, 3, 30,
     kDcOutColumns},
    {VX63_SET_FILE_OPT_MEAS, "/usr/local/bin/meas_set/measrement_setting_file_opt_meas.csv", 12, 1, 12,
     kOptMeasColumns},
    {VX63_SET_FILE_CONSTA_NUM, "/usr/local/bin/meas_set/measrement_setting_file_consta_num.csv", 16, 1, 16,
     kConstaNumColumns},
    {VX63_SET_FILE_USER_SET, "/usr/local/bin/user_set/%s.csv", 28, 324, 0, kUserSetColumns},
    {VX63_SET_FILE_USER_LIST, "/usr/local/bin/user_set/user_setting_file_list.csv", 15, 140, 0,
     kUserListColumns},
    {VX63_SET_FILE_UHF, "/usr/local/bin/ch_set/channel_setting_file_uhf_6mhz.csv", 12, 40, 480, kUhfColumns},
    {VX63_SET_FILE_BS, "/usr/local/bin/ch_set/channel_setting_file_bs_34.5mhz.csv", 16, 24, 384,
     kSatelliteColumns},
    {VX63_SET_FILE_CS, "/usr/local/bin/ch_set/channel_setting_file_cs_34.5mhz.csv", 16, 26, 416,
     kSatelliteColumns},
    {VX63_SET_FILE_SCCB, "/usr/local/bin/ch_set/channel_setting_file_sccb_27mhz.csv", 16, 23, 368,
     kSatelliteColumns},
    {VX63_SET_FILE_SCCC, "/usr/local/bin/ch_set/channel_setting_file_sccc_27mhz.csv", 16, 24, 384,
     kSatelliteColumns},
    {VX63_SET_FILE_JSAT3A, "/usr/local/bin/ch_set/channel_setting_file_jsat3a_27mhz.csv", 16, 28, 448,
     kSatelliteColumns},
    {VX63_SET_FILE_JSAT4B, "/usr/local/bin/ch_set/channel_setting_file_jsat4b_27mhz.csv", 16, 32, 512,
     kSatelliteColumns},
    {VX63_SET_FILE_CATV_ALL, "/usr/local/bin/ch_set/channel_setting_file_catv_all_6mhz.csv", 16, 150, 2400,
     kCatvColumns},
    {VX63_SET_FILE_CATV_90_470MHZ, "/usr/local/bin/ch_set/channel_setting_file_catv_90_470mhz_6mhz.csv", 16,
     62, 992, kCatvColumns},
    {VX63_SET_FILE_CATV_470_1002MHZ, "/usr/local/bin/ch_set/channel_setting_file_catv_470_1002mhz_6mhz.csv",
     16, 88, 1408, kCatvColumns},
    {VX63_SET_FILE_SKYP, "/usr/local/bin/ch_set/channel_setting_file_skyp_6mhz.csv", 12, 113, 1356,
     kSkypColumns},
    {VX63_SET_FILE_PILOT, "/usr/local/bin/ch_set/channel_setting_file_pilot.csv", 12, 20, 240, kPilotColumns},
    {VX63_SET_FILE_LTE, "/usr/local/bin/ch_set/channel_setting_file_lte.csv", 16, 6, 96, kLteColumns},
    {VX63_SET_FILE_FM, "/usr/local/bin/ch_set/channel_setting_file_fm.csv", 12, 251, 3012, kFmColumns},
    {VX63_SET_FILE_MANU_BDSYS_MOD, "/usr/local/bin/meas_set/measrement_setting_file_manu_bdsys_mod.csv", 8,
     23, 184, kManuBdsysModColumns},
    {VX63_SET_FILE_BDSYS_CONV, "/usr/local/bin/meas_set/measrement_setting_file_bdsys_conv.csv", 6, 28, 168,
     kBdsysConvColumns},
    {VX63_SET_FILE_CATV_BDSYS_CONV, "/usr/local/bin/meas_set/measrement_setting_file_catv_bdsys_conv.csv", 8,
     5, 40, kCatvBdsysConvColumns},
    {VX63_SET_FILE_CATV_UP_STREAM, "/usr/local/bin/ch_set/channel_setting_file_catv_up_stream.csv", 12, 1001,
     12012, kUpStreamColumns},
    {VX63_SET_FILE_PMEAS_MNG, "/usr/local/bin/pmeas_set/pmeas_setting_file_pmeas_mng.csv", 68, 48, 3264,
     kPmeasMngColumns},
    {VX63_SET_FILE_LOGGER_SET, "/usr/local/bin/logger_set/%s.csv", 28, 324, 0, kLoggerSetColumns},
    {VX63_SET_FILE_LOGGER_LIST, "/usr/local/bin/logger_set/logger_setting_file_list.csv", 15, 140, 0,
     kLoggerListColumns},
    {VX63_SET_FILE_JSAT3A_ANTENNA, "/usr/local/bin/ch_set/channel_setting_file_jsat3a_antenna_27mhz.csv", 16,
     16, 256, kSatelliteColumns},
    {VX63_SET_FILE_JSAT4B_ANTENNA, "/usr/local/bin/ch_set/channel_setting_file_jsat4b_antenna_27mhz.csv", 16,
     16, 256, kSatelliteColumns},
    {VX63_SET_FILE_FM_DEF, "/usr/local/bin/ch_set/channel_setting_file_fm_def.csv", 12, 12, 144,
     kFmDefColumns},
    {VX63_SET_FILE_CATV_UP_STREAM_DEF, "/usr/local/bin/ch_set/channel_setting_file_catv_up_stream_def.csv",
     12, 12, 144, kUpStreamDefColumns},
    {VX63_SET_FILE_BS_CS, "/usr/local/bin/ch_set/channel_setting_file_bs_cs_34.5mhz.csv", 16, 50, 800,
     kSatelliteColumns},
    {VX63_SET_FILE_USER_SET_USB1, "/usr/local/bin/user_set_usb1/%s.csv", 28, 324, 0, kUserSetColumns},
    {VX63_SET_FILE_USER_LIST_USB1, "/usr/local/bin/user_set_usb1/user_setting_file_list.csv", 15, 140, 0,
     kUserListColumns},
    {VX63_SET_FILE_USER_SET_USB2, "/usr/local/bin/user_set_usb2/%s.csv", 28, 324, 0, kUserSetColumns},
    {VX63_SET_FILE_USER_LIST_USB2, "/usr/local/bin/user_set_usb2/user_setting_file_list.csv", 15, 140, 0,
     kUserListColumns},
    {VX63_SET_FILE_LOGGER_SET_USB1, "/usr/local/bin/logger_set_usb1/%s.csv", 28, 324, 0, kLoggerSetColumns},
    {VX63_SET_FILE_LOGGER_LIST_USB1, "/usr/local/bin/logger_set_usb1/logger_setting_file_list.csv", 15, 140,
     0, kLoggerListColumns},
    {VX63_SET_FILE_LOGGER_SET_USB2, "/usr/local/bin/logger_set_usb2/%s.csv", 28, 324, 0, kLoggerSetColumns},
    {VX63_SET_FILE_LOGGER_LIST_USB2, "/usr/local/bin/logger_set_usb2/logger_setting_file_list.csv", 15, 140,
     0, kLoggerListColumns},
};

// A set and the list of its folder.
struct SetPair {
    int32_t set;  // file id
    int32_t list; // file id
};
inline constexpr SetPair kSetPairs[] = {
    {VX63_SET_FILE_USER_SET, VX63_SET_FILE_USER_LIST},               //
    {VX63_SET_FILE_LOGGER_SET, VX63_SET_FILE_LOGGER_LIST},           //
    {VX63_SET_FILE_USER_SET_USB1, VX63_SET_FILE_USER_LIST_USB1},     //
    {VX63_SET_FILE_USER_SET_USB2, VX63_SET_FILE_USER_LIST_USB2},     //
    {VX63_SET_FILE_LOGGER_SET_USB1, VX63_SET_FILE_LOGGER_LIST_USB1}, //
    {VX63_SET_FILE_LOGGER_SET_USB2, VX63_SET_FILE_LOGGER_LIST_USB2}, //
};

} // namespace vx63::settings

#endif

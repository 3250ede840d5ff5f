// libvx63_settings.h: what the settings files of libvx63.h look like: where they lie, their records, their
// columns. For C++17 and later; data only, nothing to link.
//
//   const vx63::SettingsFile& file = vx63::kSettingsFiles[VX63_SET_FILE_VOLUME];
//   std::vector<uint8_t> records(file.rows * file.dataSize);
//   vx63_readSetFile(file.fileId, records.data(), nullptr, 0);
//   const vx63::Column& volume = file.columns[4]; // "VOLUME", at records[volume.offset]
//
// Numbers stand in a record in the byte order of the machine, which is little-endian.
#ifndef LIBVX63_SETTINGS_H
#define LIBVX63_SETTINGS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vx63 {

// A column of a file; the field of a record that it fills.
struct Column {
    std::string_view name;
    uint32_t type;
    uint32_t width;  // bytes
    uint32_t offset; // in the record
};

// Kinds of values, as the platform's CSV functions know them.
inline constexpr uint32_t kMeasData = 0;   // selection of measurement data, 1 byte
inline constexpr uint32_t kJudgement = 1;  // judgement value, 2 bytes
inline constexpr uint32_t kModulation = 2; // modulation bit mask, 4 bytes
inline constexpr uint32_t kUnsigned = 3;   // 1, 2 or 4 bytes
inline constexpr uint32_t kSigned = 4;     // 4 bytes
inline constexpr uint32_t kText = 6;       // NUL-terminated inside the field, 8 or 13 bytes

// ---- The tables, each with the ids of the files that it describes ----

// File 0
inline constexpr Column kPowOffColumns[] = {
    {"POWER_OFF_SEL1", 3, 1, 0}, //
    {"POWER_OFF_SEL2", 3, 1, 1}, //
    {"POWER_OFF_SEL3", 3, 1, 2}, //
    {"POWER_OFF_SEL4", 3, 1, 3}, //
    {"POWER_OFF_SEL5", 3, 1, 4}, //
    {"POWER_OFF_SEL6", 3, 1, 5}, //
    {"POWER_OFF", 3, 1, 6},      //
};

// File 1
inline constexpr Column kVolumeColumns[] = {
    {"VOLUME_SEL1", 3, 1, 0}, //
    {"VOLUME_SEL2", 3, 1, 1}, //
    {"VOLUME_SEL3", 3, 1, 2}, //
    {"VOLUME_SEL4", 3, 1, 3}, //
    {"VOLUME", 3, 1, 4},      //
};

// File 2
inline constexpr Column kBrightnessColumns[] = {
    {"BRIGHTNESS_SEL1", 3, 1, 0}, //
    {"BRIGHTNESS_SEL2", 3, 1, 1}, //
    {"BRIGHTNESS_SEL3", 3, 1, 2}, //
    {"BRIGHTNESS", 3, 1, 3},      //
};

// File 3
inline constexpr Column kLocalFreqColumns[] = {
    {"BAND", 3, 1, 0},         //
    {"WAVE", 3, 1, 1},         //
    {"LOCAL_FREQ1", 3, 4, 4},  //
    {"LOCAL_FREQ2", 3, 4, 8},  //
    {"LOCAL_FREQ3", 3, 4, 12}, //
    {"LOCAL_FREQ4", 3, 4, 16}, //
    {"LOCAL_FREQ5", 3, 4, 20}, //
    {"LOCAL_FREQ6", 3, 4, 24}, //
};

// File 4
inline constexpr Column kThrdColumns[] = {
    {"BAND", 3, 1, 0},          //
    {"SPEC", 3, 1, 1},          //
    {"MODULATION", 2, 4, 4},    //
    {"LV_MIN", 4, 4, 8},        //
    {"LV_LOW", 4, 4, 12},       //
    {"LV_HIGH", 4, 4, 16},      //
    {"LV_MAX", 4, 4, 20},       //
    {"MER_MIN", 3, 4, 24},      //
    {"MER_LOW", 3, 4, 28},      //
    {"MER_HIGH", 3, 4, 32},     //
    {"MER_MAX", 3, 4, 36},      //
    {"BER_MIN_MAN", 3, 4, 40},  //
    {"BER_MIN_EXP", 4, 4, 44},  //
    {"BER_LOW_MAN", 3, 4, 48},  //
    {"BER_LOW_EXP", 4, 4, 52},  //
    {"BER_HIGH_MAN", 3, 4, 56}, //
    {"BER_HIGH_EXP", 4, 4, 60}, //
    {"BER_MAX_MAN", 3, 4, 64},  //
    {"BER_MAX_EXP", 4, 4, 68},  //
    {"CN_MIN", 3, 4, 72},       //
    {"CN_LOW", 3, 4, 76},       //
    {"CN_HIGH", 3, 4, 80},      //
    {"CN_MAX", 3, 4, 84},       //
};

// File 5
inline constexpr Column kCnrMerColumns[] = {
    {"CNRMER_SEL1", 3, 1, 0}, //
    {"CNRMER_SEL2", 3, 1, 1}, //
    {"CNRMER", 3, 1, 2},      //
};

// File 6
inline constexpr Column kCatvFreqColumns[] = {
    {"SET_NO", 3, 1, 0},    //
    {"MOD", 2, 4, 4},       //
    {"FREQ_C24", 3, 4, 8},  //
    {"FREQ_C25", 3, 4, 12}, //
    {"FREQ_C26", 3, 4, 16}, //
    {"FREQ_C27", 3, 4, 20}, //
    {"DISP", 3, 1, 24},     //
    {"USE", 3, 1, 25},      //
};

// File 7
inline constexpr Column kCableLossColumns[] = {
    {"FREQ", 3, 4, 0},             //
    {"CORRECTION_VALUE", 3, 4, 4}, //
};

// File 8
inline constexpr Column kCableLossEnbColumns[] = {
    {"CORRECTION_ENB", 3, 1, 0}, //
};

// File 9
inline constexpr Column kInputColumns[] = {
    {"INPUT_SEL1", 3, 1, 0}, //
    {"INPUT_SEL2", 3, 1, 1}, //
    {"INPUT", 3, 1, 2},      //
};

// File 10
inline constexpr Column kCatvModColumns[] = {
    {"MOD_SEL1", 2, 4, 0}, //
    {"MOD_SEL2", 2, 4, 4}, //
    {"MOD_SEL3", 2, 4, 8}, //
};

// File 11
inline constexpr Column kDcOutColumns[] = {
    {"DC_OUT_STAT", 3, 1, 0}, //
    {"JCSAT3_H", 3, 1, 1},    //
    {"JCSAT3_V", 3, 1, 2},    //
    {"JCSAT4_H", 3, 1, 3},    //
    {"JCSAT4_V", 3, 1, 4},    //
    {"SCC-B_H", 3, 1, 5},     //
    {"SCC-B_V", 3, 1, 6},     //
    {"SCC-C_H", 3, 1, 7},     //
    {"SCC-C_V", 3, 1, 8},     //
    {"OTHER", 3, 1, 9},       //
};

// File 12
inline constexpr Column kOptMeasColumns[] = {
    {"OPT_MEAS_SEL1", 3, 4, 0}, //
    {"OPT_MEAS_SEL2", 3, 4, 4}, //
    {"OPT_MEAS_SEL3", 3, 4, 8}, //
};

// File 13
inline constexpr Column kConstaNumColumns[] = {
    {"CONSTA_NUM_SEL1", 3, 4, 0}, //
    {"CONSTA_NUM_SEL2", 3, 4, 4}, //
    {"CONSTA_NUM_SEL3", 3, 4, 8}, //
    {"CONSTA_NUM", 3, 4, 12},     //
};

// Files 14, 42, 44
inline constexpr Column kUserSetColumns[] = {
    {"NO", 3, 1, 0},           //
    {"ENBFLG", 3, 1, 1},       //
    {"BAND", 3, 1, 2},         //
    {"SPEC", 3, 1, 3},         //
    {"CH", 6, 8, 4},           //
    {"CENTER_FREQ", 3, 4, 12}, //
    {"MOD", 2, 4, 16},         //
    {"LOCAL_FREQ", 3, 4, 20},  //
    {"GETDATA_FLG", 3, 1, 24}, //
    {"DC_OUT", 3, 1, 25},      //
};

// Files 15, 43, 45
inline constexpr Column kUserListColumns[] = {
    {"NO", 3, 1, 0},         //
    {"ENBFLG", 3, 1, 1},     //
    {"FILE_NAME", 6, 13, 2}, //
};

// File 16
inline constexpr Column kUhfColumns[] = {
    {"CH_NO", 6, 8, 0},     //
    {"CENT_FREQ", 3, 4, 8}, //
};

// Files 17, 18, 19, 20, 21, 22, 37, 38, 41
inline constexpr Column kSatelliteColumns[] = {
    {"WAVE", 3, 1, 0},       //
    {"CH_NO", 6, 8, 4},      //
    {"CENT_FREQ", 3, 4, 12}, //
};

// Files 23, 24, 25
inline constexpr Column kCatvColumns[] = {
    {"CH_NO", 6, 8, 0},           //
    {"QAM_CENT_FREQ", 3, 4, 8},   //
    {"OFDM_CENT_FREQ", 3, 4, 12}, //
};

// File 26
inline constexpr Column kSkypColumns[] = {
    {"CH_NO", 6, 8, 0},     //
    {"CENT_FREQ", 3, 4, 8}, //
};

// File 27
inline constexpr Column kPilotColumns[] = {
    {"CH_NO", 6, 8, 0},     //
    {"CENT_FREQ", 3, 4, 8}, //
};

// File 28
inline constexpr Column kLteColumns[] = {
    {"CH_NO", 6, 8, 0},      //
    {"CENT_FREQ", 3, 4, 8},  //
    {"BAND_WIDE", 3, 4, 12}, //
};

// File 29
inline constexpr Column kFmColumns[] = {
    {"CH_NO", 6, 8, 0},     //
    {"CENT_FREQ", 3, 4, 8}, //
};

// File 30
inline constexpr Column kManuBdsysModColumns[] = {
    {"BDSYS", 3, 2, 0}, //
    {"MOD", 3, 4, 4},   //
};

// File 31
inline constexpr Column kBdsysConvColumns[] = {
    {"BAND", 3, 1, 4},       //
    {"BDSYS", 3, 2, 0},      //
    {"BDSYS_TUNE", 3, 2, 2}, //
};

// File 32
inline constexpr Column kCatvBdsysConvColumns[] = {
    {"BDSYS(CATV)", 3, 2, 4}, //
    {"MOD", 3, 4, 0},         //
    {"BDSYS_TUNE", 3, 2, 6},  //
};

// File 33
inline constexpr Column kUpStreamColumns[] = {
    {"CH_NO", 6, 8, 0},     //
    {"CENT_FREQ", 3, 4, 8}, //
};

// File 34
inline constexpr Column kPmeasMngColumns[] = {
    {"NEXT_CH_SYNC", 4, 4, 0},          //
    {"SINGLE0_ISMES", 3, 1, 4},         //
    {"SINGLE0_MESDATA", 0, 1, 5},       //
    {"SINGLE0_SAVEMETHOD", 3, 1, 6},    //
    {"SINGLE0_TMNOSIGNAL", 3, 4, 8},    //
    {"SINGLE0_TMLOCK", 3, 4, 12},       //
    {"SINGLE0_JUDGEMESDATA", 1, 2, 16}, //
    {"SINGLE0_JUDGESTATUS", 1, 2, 18},  //
    {"SINGLE1_ISMES", 3, 1, 20},        //
    {"SINGLE1_MESDATA", 0, 1, 21},      //
    {"SINGLE1_SAVEMETHOD", 3, 1, 22},   //
    {"SINGLE1_TMNOSIGNAL", 3, 4, 24},   //
    {"SINGLE1_TMLOCK", 3, 4, 28},       //
    {"SINGLE1_JUDGEMESDATA", 1, 2, 32}, //
    {"SINGLE1_JUDGESTATUS", 1, 2, 34},  //
    {"MULTI0_ISMES", 3, 1, 36},         //
    {"MULTI0_MESDATA", 0, 1, 37},       //
    {"MULTI0_SAVEMETHOD", 3, 1, 38},    //
    {"MULTI0_TMNOSIGNAL", 3, 4, 40},    //
    {"MULTI0_TMLOCK", 3, 4, 44},        //
    {"MULTI0_JUDGEMESDATA", 1, 2, 48},  //
    {"MULTI0_JUDGESTATUS", 1, 2, 50},   //
    {"MULTI1_ISMES", 3, 1, 52},         //
    {"MULTI1_MESDATA", 0, 1, 53},       //
    {"MULTI1_SAVEMETHOD", 3, 1, 54},    //
    {"MULTI1_TMNOSIGNAL", 3, 4, 56},    //
    {"MULTI1_TMLOCK", 3, 4, 60},        //
    {"MULTI1_JUDGEMESDATA", 1, 2, 64},  //
    {"MULTI1_JUDGESTATUS", 1, 2, 66},   //
};

// Files 35, 46, 48
inline constexpr Column kLoggerSetColumns[] = {
    {"NO", 3, 1, 0},           //
    {"ENBFLG", 3, 1, 1},       //
    {"BAND", 3, 1, 2},         //
    {"SPEC", 3, 1, 3},         //
    {"CH", 6, 8, 4},           //
    {"CENTER_FREQ", 3, 4, 12}, //
    {"MOD", 2, 4, 16},         //
    {"LOCAL_FREQ", 3, 4, 20},  //
    {"GETDATA_FLG", 3, 1, 24}, //
    {"DC_OUT", 3, 1, 25},      //
};

// Files 36, 47, 49
inline constexpr Column kLoggerListColumns[] = {
    {"NO", 3, 1, 0},         //
    {"ENBFLG", 3, 1, 1},     //
    {"FILE_NAME", 6, 13, 2}, //
};

// File 39
inline constexpr Column kFmDefColumns[] = {
    {"CH_NO", 6, 8, 0},     //
    {"CENT_FREQ", 3, 4, 8}, //
};

// File 40
inline constexpr Column kUpStreamDefColumns[] = {
    {"CH_NO", 6, 8, 0},     //
    {"CENT_FREQ", 3, 4, 8}, //
};

// ---- The files ----

// What is known of a file.
struct SettingsFile {
    uint32_t fileId;  // VX63_SET_FILE_*
    const char* path; // of a set: a format with one %s for the set's name
    uint32_t columnCount;
    uint32_t dataSize;     // bytes of a record
    uint32_t rows;         // records of the file; of a set or a list: at most
    uint32_t defaultSize;  // bytes of the factory contents; 0 for sets and lists, which have none
    const Column* columns; // in the order in which they stand in the file
};

// First line of every file.
inline constexpr char kSettingsVersion[] = "1.0.0";

// By file id. "measrement" is how the meters spell it.
inline constexpr SettingsFile kSettingsFiles[] = {
    {0, "/usr/local/bin/sys_set/system_setting_file_powoff.csv", 7, 7, 1, 7, kPowOffColumns},
    {1, "/usr/local/bin/sys_set/system_setting_file_volume.csv", 5, 5, 1, 5, kVolumeColumns},
    {2, "/usr/local/bin/sys_set/system_setting_file_brightness.csv", 4, 4, 1, 4, kBrightnessColumns},
    {3, "/usr/local/bin/meas_set/measrement_setting_file_local_freq.csv", 8, 28, 12, 336, kLocalFreqColumns},
    {4, "/usr/local/bin/meas_set/measrement_setting_file_thrd.csv", 23, 88, 24, 2112, kThrdColumns},
    {5, "/usr/local/bin/meas_set/measrement_setting_file_cnrmer.csv", 3, 3, 15, 45, kCnrMerColumns},
    {6, "/usr/local/bin/meas_set/measrement_setting_file_catv_freq.csv", 8, 28, 4, 112, kCatvFreqColumns},
    {7, "/usr/local/bin/meas_set/measrement_setting_file_cable_loss.csv", 2, 8, 4, 32, kCableLossColumns},
    {8, "/usr/local/bin/meas_set/measrement_setting_file_cable_loss_enb.csv", 1, 1, 1, 1,
     kCableLossEnbColumns},
    {9, "/usr/local/bin/meas_set/measrement_setting_file_input.csv", 3, 3, 1, 3, kInputColumns},
    {10, "/usr/local/bin/meas_set/measrement_setting_file_catv_mod.csv", 3, 12, 1, 12, kCatvModColumns},
    {11, "/usr/local/bin/meas_set/measrement_setting_file_dc_out.csv", 10, 10, 3, 30, kDcOutColumns},
    {12, "/usr/local/bin/meas_set/measrement_setting_file_opt_meas.csv", 3, 12, 1, 12, kOptMeasColumns},
    {13, "/usr/local/bin/meas_set/measrement_setting_file_consta_num.csv", 4, 16, 1, 16, kConstaNumColumns},
    {14, "/usr/local/bin/user_set/%s.csv", 10, 28, 324, 0, kUserSetColumns},
    {15, "/usr/local/bin/user_set/user_setting_file_list.csv", 3, 15, 140, 0, kUserListColumns},
    {16, "/usr/local/bin/ch_set/channel_setting_file_uhf_6mhz.csv", 2, 12, 40, 480, kUhfColumns},
    {17, "/usr/local/bin/ch_set/channel_setting_file_bs_34.5mhz.csv", 3, 16, 24, 384, kSatelliteColumns},
    {18, "/usr/local/bin/ch_set/channel_setting_file_cs_34.5mhz.csv", 3, 16, 26, 416, kSatelliteColumns},
    {19, "/usr/local/bin/ch_set/channel_setting_file_sccb_27mhz.csv", 3, 16, 23, 368, kSatelliteColumns},
    {20, "/usr/local/bin/ch_set/channel_setting_file_sccc_27mhz.csv", 3, 16, 24, 384, kSatelliteColumns},
    {21, "/usr/local/bin/ch_set/channel_setting_file_jsat3a_27mhz.csv", 3, 16, 28, 448, kSatelliteColumns},
    {22, "/usr/local/bin/ch_set/channel_setting_file_jsat4b_27mhz.csv", 3, 16, 32, 512, kSatelliteColumns},
    {23, "/usr/local/bin/ch_set/channel_setting_file_catv_all_6mhz.csv", 3, 16, 150, 2400, kCatvColumns},
    {24, "/usr/local/bin/ch_set/channel_setting_file_catv_90_470mhz_6mhz.csv", 3, 16, 62, 992, kCatvColumns},
    {25, "/usr/local/bin/ch_set/channel_setting_file_catv_470_1002mhz_6mhz.csv", 3, 16, 88, 1408,
     kCatvColumns},
    {26, "/usr/local/bin/ch_set/channel_setting_file_skyp_6mhz.csv", 2, 12, 113, 1356, kSkypColumns},
    {27, "/usr/local/bin/ch_set/channel_setting_file_pilot.csv", 2, 12, 20, 240, kPilotColumns},
    {28, "/usr/local/bin/ch_set/channel_setting_file_lte.csv", 3, 16, 6, 96, kLteColumns},
    {29, "/usr/local/bin/ch_set/channel_setting_file_fm.csv", 2, 12, 251, 3012, kFmColumns},
    {30, "/usr/local/bin/meas_set/measrement_setting_file_manu_bdsys_mod.csv", 2, 8, 23, 184,
     kManuBdsysModColumns},
    {31, "/usr/local/bin/meas_set/measrement_setting_file_bdsys_conv.csv", 3, 6, 28, 168, kBdsysConvColumns},
    {32, "/usr/local/bin/meas_set/measrement_setting_file_catv_bdsys_conv.csv", 3, 8, 5, 40,
     kCatvBdsysConvColumns},
    {33, "/usr/local/bin/ch_set/channel_setting_file_catv_up_stream.csv", 2, 12, 1001, 12012,
     kUpStreamColumns},
    {34, "/usr/local/bin/pmeas_set/pmeas_setting_file_pmeas_mng.csv", 29, 68, 48, 3264, kPmeasMngColumns},
    {35, "/usr/local/bin/logger_set/%s.csv", 10, 28, 324, 0, kLoggerSetColumns},
    {36, "/usr/local/bin/logger_set/logger_setting_file_list.csv", 3, 15, 140, 0, kLoggerListColumns},
    {37, "/usr/local/bin/ch_set/channel_setting_file_jsat3a_antenna_27mhz.csv", 3, 16, 16, 256,
     kSatelliteColumns},
    {38, "/usr/local/bin/ch_set/channel_setting_file_jsat4b_antenna_27mhz.csv", 3, 16, 16, 256,
     kSatelliteColumns},
    {39, "/usr/local/bin/ch_set/channel_setting_file_fm_def.csv", 2, 12, 12, 144, kFmDefColumns},
    {40, "/usr/local/bin/ch_set/channel_setting_file_catv_up_stream_def.csv", 2, 12, 12, 144,
     kUpStreamDefColumns},
    {41, "/usr/local/bin/ch_set/channel_setting_file_bs_cs_34.5mhz.csv", 3, 16, 50, 800, kSatelliteColumns},
    {42, "/usr/local/bin/user_set_usb1/%s.csv", 10, 28, 324, 0, kUserSetColumns},
    {43, "/usr/local/bin/user_set_usb1/user_setting_file_list.csv", 3, 15, 140, 0, kUserListColumns},
    {44, "/usr/local/bin/user_set_usb2/%s.csv", 10, 28, 324, 0, kUserSetColumns},
    {45, "/usr/local/bin/user_set_usb2/user_setting_file_list.csv", 3, 15, 140, 0, kUserListColumns},
    {46, "/usr/local/bin/logger_set_usb1/%s.csv", 10, 28, 324, 0, kLoggerSetColumns},
    {47, "/usr/local/bin/logger_set_usb1/logger_setting_file_list.csv", 3, 15, 140, 0, kLoggerListColumns},
    {48, "/usr/local/bin/logger_set_usb2/%s.csv", 10, 28, 324, 0, kLoggerSetColumns},
    {49, "/usr/local/bin/logger_set_usb2/logger_setting_file_list.csv", 3, 15, 140, 0, kLoggerListColumns},
};

// A set and the list of its folder.
struct SetPair {
    int32_t set;
    int32_t list;
};
inline constexpr SetPair kSetPairs[] = {
    {14, 15}, // user set, internal
    {35, 36}, // logger set, internal
    {42, 43}, // user set, USB 1
    {44, 45}, // user set, USB 2
    {46, 47}, // logger set, USB 1
    {48, 49}, // logger set, USB 2
};

} // namespace vx63

#endif

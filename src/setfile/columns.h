// The columns of the settings files, in the order in which they stand in the file: name, kind, width and
// offset in the record. What the platform's CSV functions take is made of them at compile time.
#pragma once

#include "lsys.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace vx63 {

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

// The header line of a file and its columns as the platform takes them.
template <const auto& kColumns>
class Layout {
    static constexpr size_t kHeaderSize = [] {
        size_t size = std::size(kColumns); // the commas between and the terminator
        for (const Column& column : kColumns) {
            size += column.name.size();
        }
        return size;
    }();

public:
    static constexpr auto kHeader = [] {
        std::array<char, kHeaderSize> header = {};
        size_t used = 0;
        for (const Column& column : kColumns) {
            if (used != 0) {
                header[used++] = ',';
            }
            for (const char letter : column.name) {
                header[used++] = letter;
            }
        }
        return header;
    }();

    static constexpr auto kDescriptors = [] {
        std::array<LsysColumn, std::size(kColumns)> descriptors = {};
        size_t i = 0;
        for (const Column& column : kColumns) {
            descriptors[i++] = {.ulType = column.type, .ulWidth = column.width, .ulOffset = column.offset};
        }
        return descriptors;
    }();
};

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

} // namespace vx63

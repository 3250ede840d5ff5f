// libvx63_settings.h: what the settings files of libvx63.h look like: where they lie, their records, their
// columns and what the values mean. For C++17 and later; data only, nothing to link.
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

// A value with a name of its own.
struct Word {
    int64_t value;         // or a bit
    std::string_view text; // may be empty
};

// The values of a column that have a meaning.
struct Values {
    // How they are told.
    enum Kind {
        kRange, // those of a range, and the words
        kWords, // the words alone
        kBits,  // the words, and any of their bits together
    };

    std::string_view unit; // of "0.1 dB" a 5 is 0.5 dB; may be empty
    Kind kind;             // how they are told
    int64_t lowest;        // of the range
    int64_t highest;       // of the range
    const Word* words;     // null where there are none
    uint32_t wordCount;    // how many there are

    // A range.
    constexpr Values(std::string_view unitOfValues, int64_t from, int64_t to)
        : unit(unitOfValues), kind(kRange), lowest(from), highest(to), words(nullptr), wordCount(0)
    {}

    // A range and words.
    template <uint32_t kCount>
    constexpr Values(std::string_view unitOfValues, int64_t from, int64_t to, const Word (&beside)[kCount])
        : unit(unitOfValues), kind(kRange), lowest(from), highest(to), words(beside), wordCount(kCount)
    {}

    // Words or bits.
    template <uint32_t kCount>
    constexpr Values(std::string_view unitOfValues, Kind wordsOrBits, const Word (&all)[kCount])
        : unit(unitOfValues), kind(wordsOrBits), lowest(0), highest(0), words(all), wordCount(kCount)
    {}

    // Whether a value is one of them.
    constexpr bool have(int64_t value) const
    {
        int64_t bits = 0;
        for (uint32_t i = 0; i < wordCount; ++i) {
            bits |= words[i].value;
            if (words[i].value == value)
                return true;
        }
        return kind == kRange ? lowest <= value && value <= highest : kind == kBits && (value & ~bits) == 0;
    }
};

// ---- What values mean ----

// All that the column can hold. Of a code that only the services interpret no more is told.
inline constexpr Values kAnyValue{"", INT64_MIN, INT64_MAX};

inline constexpr Word kSwitchWords[] = {{0, "off"}, {1, "on"}};
inline constexpr Values kSwitch{"", Values::kWords, kSwitchWords};

inline constexpr Values kFlag{"", 0, 1};

inline constexpr Values kVolumes{"", 0, 3};

inline constexpr Word kBrightnessWords[] = {{1, "dark"}, {2, "middle"}, {3, "bright"}};
inline constexpr Values kBrightnesses{"", Values::kWords, kBrightnessWords};

inline constexpr Values kInputs{"", 0, 1};

inline constexpr Word kCnrMerWords[] = {{255, "not used"}};
inline constexpr Values kCnrMers{"", 0, 1, kCnrMerWords};

inline constexpr Word kSupplyWords[] = {
    {VX63_POWER_SUPPLY_OFF, "off"},
    {VX63_POWER_SUPPLY_11V, "11 V"},
    {VX63_POWER_SUPPLY_15V, "15 V"},
    {VX63_POWER_SUPPLY_11V_TONE, "11 V, tone"},
    {VX63_POWER_SUPPLY_15V_TONE, "15 V, tone"},
};
inline constexpr Values kSupplies{"", Values::kWords, kSupplyWords};

inline constexpr Values kWavelengths{"nm", 800, 1700};

inline constexpr Word kPointWords[] = {{1000, ""}, {2000, ""}, {4000, ""}};
inline constexpr Values kPoints{"points", Values::kWords, kPointWords};

inline constexpr Word kBandWords[] = {
    {0, "none"},  {1, "UHF"},   {2, "BS"},    {3, "CS"},         {4, "JSAT 3A"}, {5, "JSAT 4B"},
    {6, "SCC-B"}, {7, "SCC-C"}, {8, "cable"}, {9, "cable"},      {10, "cable"},  {11, "pilot"},
    {12, "skyp"}, {13, "LTE"},  {14, "FM"},   {15, "up-stream"},
};
inline constexpr Values kBands{"", Values::kWords, kBandWords};

inline constexpr Word kWaveWords[] = {
    {0, "right-hand circular"}, //
    {1, "left-hand circular"},  //
    {2, "horizontal"},          //
    {3, "vertical"},            //
};
inline constexpr Values kWaves{"", Values::kWords, kWaveWords};

inline constexpr Word kSystemWords[] = {
    {VX63_BDSYS_TERRESTRIAL, "terrestrial"},
    {VX63_BDSYS_SATELLITE, "satellite"},
    {VX63_BDSYS_SATELLITE_2, "satellite-2"},
    {VX63_BDSYS_CATV, "catv"},
    {VX63_BDSYS_JSAT, "jsat"},
    {VX63_BDSYS_JSAT_2, "jsat-2"},
    {VX63_BDSYS_SKYP, "skyp"},
    {VX63_BDSYS_CATV_2, "catv-2"},
    {VX63_BDSYS_LEVEL, "level"},
};
inline constexpr Values kSystems{"", Values::kWords, kSystemWords};

inline constexpr Word kModulationWords[] = {
    {VX63_MOD_ANY, "any"},
    {VX63_MOD_OFDM, "OFDM"},
    {VX63_MOD_BPSK, "BPSK"},
    {VX63_MOD_QPSK, "QPSK"},
    {VX63_MOD_8PSK_SATELLITE, "8PSK (satellite)"},
    {VX63_MOD_8PSK, "8PSK (others)"},
    {VX63_MOD_16APSK, "16APSK"},
    {VX63_MOD_32APSK, "32APSK"},
    {VX63_MOD_64QAM, "64QAM"},
    {VX63_MOD_256QAM, "256QAM"},
    {VX63_MOD_NONE, "none"},
};
inline constexpr Values kModulations{"", Values::kBits, kModulationWords};

// Frequencies: on the cable, where the tuner sets the bounds; as broadcast; of what lies between.
inline constexpr Word kEmptyPlaceWords[] = {{0, "empty place"}};
inline constexpr Word kNoLocalFreqWords[] = {{0, "none"}, {4294967295, "none"}};
inline constexpr Values kCableFreqs{"kHz", 10000, 3224000};
inline constexpr Values kCableFreqPlaces{"kHz", 10000, 3224000, kEmptyPlaceWords};
inline constexpr Values kBroadcastFreqs{"kHz", 10000, 22000000};
inline constexpr Values kBroadcastFreqPlaces{"kHz", 10000, 22000000, kEmptyPlaceWords};
inline constexpr Values kLocalFreqs{"kHz", 1, 22000000, kNoLocalFreqWords};
inline constexpr Values kBandwidths{"kHz", 1, 100000};

// Thresholds. A bit error rate is MAN x 0.01 x 10^EXP.
inline constexpr Values kLevels{"0.1 dBuV", -200, 1300};
inline constexpr Values kRatios{"0.1 dB", 0, 600};
inline constexpr Values kMantissas{"0.01", INT64_MIN, INT64_MAX};
inline constexpr Values kExponents{"", -99, 0};

// A column of a file; the field of a record that it fills.
struct Column {
    std::string_view name;             // as in the header line of the file
    ColumnType type;                   // what it holds
    uint32_t width;                    // bytes
    uint32_t offset;                   // in the record
    std::string_view meaning = {};     // in a few words
    const Values* values = &kAnyValue; // of a text: all
};

// ---- The columns ----

// The columns of a file, in the order in which they stand in it.
inline constexpr Column kPowOffColumns[] = {
    {"POWER_OFF_SEL1", kUnsigned, 1, 0, "selection 1 of the power-off menu"}, //
    {"POWER_OFF_SEL2", kUnsigned, 1, 1, "selection 2 of the power-off menu"}, //
    {"POWER_OFF_SEL3", kUnsigned, 1, 2, "selection 3 of the power-off menu"}, //
    {"POWER_OFF_SEL4", kUnsigned, 1, 3, "selection 4 of the power-off menu"}, //
    {"POWER_OFF_SEL5", kUnsigned, 1, 4, "selection 5 of the power-off menu"}, //
    {"POWER_OFF_SEL6", kUnsigned, 1, 5, "selection 6 of the power-off menu"}, //
    {"POWER_OFF", kUnsigned, 1, 6, "power-off: what is selected"},            //
};

inline constexpr Column kVolumeColumns[] = {
    {"VOLUME_SEL1", kUnsigned, 1, 0, "selection 1 of the volume menu", &kVolumes},         //
    {"VOLUME_SEL2", kUnsigned, 1, 1, "selection 2 of the volume menu", &kVolumes},         //
    {"VOLUME_SEL3", kUnsigned, 1, 2, "selection 3 of the volume menu", &kVolumes},         //
    {"VOLUME_SEL4", kUnsigned, 1, 3, "selection 4 of the volume menu", &kVolumes},         //
    {"VOLUME", kUnsigned, 1, 4, "volume of the buzzer: 0 silent to 3 loudest", &kVolumes}, //
};

inline constexpr Column kBrightnessColumns[] = {
    {"BRIGHTNESS_SEL1", kUnsigned, 1, 0, "selection 1 of the brightness menu", &kBrightnesses}, //
    {"BRIGHTNESS_SEL2", kUnsigned, 1, 1, "selection 2 of the brightness menu", &kBrightnesses}, //
    {"BRIGHTNESS_SEL3", kUnsigned, 1, 2, "selection 3 of the brightness menu", &kBrightnesses}, //
    {"BRIGHTNESS", kUnsigned, 1, 3, "brightness of the display", &kBrightnesses},               //
};

inline constexpr Column kLocalFreqColumns[] = {
    {"BAND", kUnsigned, 1, 0, "band", &kBands},                                                         //
    {"WAVE", kUnsigned, 1, 1, "polarisation group", &kWaves},                                           //
    {"LOCAL_FREQ1", kUnsigned, 4, 4, "local oscillator, place 1: that of channel plans", &kLocalFreqs}, //
    {"LOCAL_FREQ2", kUnsigned, 4, 8, "local oscillator, place 2", &kLocalFreqs},                        //
    {"LOCAL_FREQ3", kUnsigned, 4, 12, "local oscillator, place 3", &kLocalFreqs},                       //
    {"LOCAL_FREQ4", kUnsigned, 4, 16, "local oscillator, place 4", &kLocalFreqs},                       //
    {"LOCAL_FREQ5", kUnsigned, 4, 20, "local oscillator, place 5", &kLocalFreqs},                       //
    {"LOCAL_FREQ6", kUnsigned, 4, 24, "local oscillator, place 6", &kLocalFreqs},                       //
};

inline constexpr Column kThrdColumns[] = {
    {"BAND", kUnsigned, 1, 0, "band", &kBands},                                                             //
    {"SPEC", kUnsigned, 1, 1, "broadcast system", &kSystems},                                               //
    {"MODULATION", kModulation, 4, 4, "modulations", &kModulations},                                        //
    {"LV_MIN", kSigned, 4, 8, "level: lower end of the scale", &kLevels},                                   //
    {"LV_LOW", kSigned, 4, 12, "level: lowest that passes", &kLevels},                                      //
    {"LV_HIGH", kSigned, 4, 16, "level: highest that passes", &kLevels},                                    //
    {"LV_MAX", kSigned, 4, 20, "level: upper end of the scale", &kLevels},                                  //
    {"MER_MIN", kUnsigned, 4, 24, "modulation error ratio: lower end of the scale", &kRatios},              //
    {"MER_LOW", kUnsigned, 4, 28, "modulation error ratio: low edge of what is wanted", &kRatios},          //
    {"MER_HIGH", kUnsigned, 4, 32, "modulation error ratio: high edge of what is wanted", &kRatios},        //
    {"MER_MAX", kUnsigned, 4, 36, "modulation error ratio: upper end of the scale", &kRatios},              //
    {"BER_MIN_MAN", kUnsigned, 4, 40, "bit error rate, worst end of the scale: mantissa", &kMantissas},     //
    {"BER_MIN_EXP", kSigned, 4, 44, "bit error rate, worst end of the scale: power of ten", &kExponents},   //
    {"BER_LOW_MAN", kUnsigned, 4, 48, "bit error rate, highest that does not fail: mantissa", &kMantissas}, //
    {"BER_LOW_EXP", kSigned, 4, 52, "bit error rate, highest that does not fail: power of ten",
     &kExponents},                                                                                       //
    {"BER_HIGH_MAN", kUnsigned, 4, 56, "bit error rate, highest that passes: mantissa", &kMantissas},    //
    {"BER_HIGH_EXP", kSigned, 4, 60, "bit error rate, highest that passes: power of ten", &kExponents},  //
    {"BER_MAX_MAN", kUnsigned, 4, 64, "bit error rate, best end of the scale: mantissa", &kMantissas},   //
    {"BER_MAX_EXP", kSigned, 4, 68, "bit error rate, best end of the scale: power of ten", &kExponents}, //
    {"CN_MIN", kUnsigned, 4, 72, "carrier-to-noise ratio: lower end of the scale", &kRatios},            //
    {"CN_LOW", kUnsigned, 4, 76, "carrier-to-noise ratio: lowest that does not fail", &kRatios},         //
    {"CN_HIGH", kUnsigned, 4, 80, "carrier-to-noise ratio: lowest that passes", &kRatios},               //
    {"CN_MAX", kUnsigned, 4, 84, "carrier-to-noise ratio: upper end of the scale", &kRatios},            //
};

inline constexpr Column kCnrMerColumns[] = {
    {"CNRMER_SEL1", kUnsigned, 1, 0, "selection 1 of the menu: CNR or MER", &kCnrMers}, //
    {"CNRMER_SEL2", kUnsigned, 1, 1, "selection 2 of the menu: CNR or MER", &kCnrMers}, //
    {"CNRMER", kUnsigned, 1, 2, "CNR or MER: what is selected", &kCnrMers},             //
};

inline constexpr Column kCatvFreqColumns[] = {
    {"SET_NO", kUnsigned, 1, 0, "number of the frequency set"},                      //
    {"MOD", kModulation, 4, 4, "modulations", &kModulations},                        //
    {"FREQ_C24", kUnsigned, 4, 8, "centre frequency of channel C24", &kCableFreqs},  //
    {"FREQ_C25", kUnsigned, 4, 12, "centre frequency of channel C25", &kCableFreqs}, //
    {"FREQ_C26", kUnsigned, 4, 16, "centre frequency of channel C26", &kCableFreqs}, //
    {"FREQ_C27", kUnsigned, 4, 20, "centre frequency of channel C27", &kCableFreqs}, //
    {"DISP", kUnsigned, 1, 24, "flag: displayed", &kFlag},                           //
    {"USE", kUnsigned, 1, 25, "flag: in use", &kFlag},                               //
};

inline constexpr Column kCableLossColumns[] = {
    {"FREQ", kUnsigned, 4, 0, "frequency of the correction", &kCableFreqs}, //
    {"CORRECTION_VALUE", kUnsigned, 4, 4, "correction at that frequency"},  //
};

inline constexpr Column kCableLossEnbColumns[] = {
    {"CORRECTION_ENB", kUnsigned, 1, 0, "correction of the cable loss", &kSwitch}, //
};

inline constexpr Column kInputColumns[] = {
    {"INPUT_SEL1", kUnsigned, 1, 0, "selection 1 of the input menu", &kInputs}, //
    {"INPUT_SEL2", kUnsigned, 1, 1, "selection 2 of the input menu", &kInputs}, //
    {"INPUT", kUnsigned, 1, 2, "measurement input", &kInputs},                  //
};

inline constexpr Column kCatvModColumns[] = {
    {"MOD_SEL1", kModulation, 4, 0, "selection 1 of the modulation menu", &kModulations}, //
    {"MOD_SEL2", kModulation, 4, 4, "selection 2 of the modulation menu", &kModulations}, //
    {"MOD_SEL3", kModulation, 4, 8, "selection 3 of the modulation menu", &kModulations}, //
};

inline constexpr Column kDcOutColumns[] = {
    {"DC_OUT_STAT", kUnsigned, 1, 0, "state of the output in which the record holds; channel plans use 0"}, //
    {"JCSAT3_H", kUnsigned, 1, 1, "supply for JSAT 3A, horizontal", &kSupplies},                            //
    {"JCSAT3_V", kUnsigned, 1, 2, "supply for JSAT 3A, vertical", &kSupplies},                              //
    {"JCSAT4_H", kUnsigned, 1, 3, "supply for JSAT 4B, horizontal", &kSupplies},                            //
    {"JCSAT4_V", kUnsigned, 1, 4, "supply for JSAT 4B, vertical", &kSupplies},                              //
    {"SCC-B_H", kUnsigned, 1, 5, "supply for SCC-B, horizontal", &kSupplies},                               //
    {"SCC-B_V", kUnsigned, 1, 6, "supply for SCC-B, vertical", &kSupplies},                                 //
    {"SCC-C_H", kUnsigned, 1, 7, "supply for SCC-C, horizontal", &kSupplies},                               //
    {"SCC-C_V", kUnsigned, 1, 8, "supply for SCC-C, vertical", &kSupplies},                                 //
    {"OTHER", kUnsigned, 1, 9, "supply for others", &kSupplies},                                            //
};

inline constexpr Column kOptMeasColumns[] = {
    {"OPT_MEAS_SEL1", kUnsigned, 4, 0, "selection 1 of the wavelength menu", &kWavelengths}, //
    {"OPT_MEAS_SEL2", kUnsigned, 4, 4, "selection 2 of the wavelength menu", &kWavelengths}, //
    {"OPT_MEAS_SEL3", kUnsigned, 4, 8, "selection 3 of the wavelength menu", &kWavelengths}, //
};

inline constexpr Column kConstaNumColumns[] = {
    {"CONSTA_NUM_SEL1", kUnsigned, 4, 0, "selection 1 of the menu", &kPoints},     //
    {"CONSTA_NUM_SEL2", kUnsigned, 4, 4, "selection 2 of the menu", &kPoints},     //
    {"CONSTA_NUM_SEL3", kUnsigned, 4, 8, "selection 3 of the menu", &kPoints},     //
    {"CONSTA_NUM", kUnsigned, 4, 12, "constellation points to collect", &kPoints}, //
};

inline constexpr Column kUserSetColumns[] = {
    {"NO", kUnsigned, 1, 0, "number of the record"},                                           //
    {"ENBFLG", kUnsigned, 1, 1, "flag: enabled", &kFlag},                                      //
    {"BAND", kUnsigned, 1, 2, "band", &kBands},                                                //
    {"SPEC", kUnsigned, 1, 3, "broadcast system", &kSystems},                                  //
    {"CH", kText, 8, 4, "name of the channel"},                                                //
    {"CENTER_FREQ", kUnsigned, 4, 12, "centre frequency as broadcast", &kBroadcastFreqPlaces}, //
    {"MOD", kModulation, 4, 16, "modulations", &kModulations},                                 //
    {"LOCAL_FREQ", kUnsigned, 4, 20, "local oscillator", &kLocalFreqs},                        //
    {"GETDATA_FLG", kUnsigned, 1, 24, "flag: get data"},                                       //
    {"DC_OUT", kUnsigned, 1, 25, "DC output"},                                                 //
};

inline constexpr Column kUserListColumns[] = {
    {"NO", kUnsigned, 1, 0, "number of the record, from 1"},  //
    {"ENBFLG", kUnsigned, 1, 1, "flag: names a set", &kFlag}, //
    {"FILE_NAME", kText, 13, 2, "name of the set"},           //
};

inline constexpr Column kUhfColumns[] = {
    {"CH_NO", kText, 8, 0, "name of the channel"},                    //
    {"CENT_FREQ", kUnsigned, 4, 8, "centre frequency", &kCableFreqs}, //
};

inline constexpr Column kSatelliteColumns[] = {
    {"WAVE", kUnsigned, 1, 0, "polarisation group", &kWaves},                           //
    {"CH_NO", kText, 8, 4, "name of the channel"},                                      //
    {"CENT_FREQ", kUnsigned, 4, 12, "centre frequency as broadcast", &kBroadcastFreqs}, //
};

inline constexpr Column kCatvColumns[] = {
    {"CH_NO", kText, 8, 0, "name of the channel"},                                            //
    {"QAM_CENT_FREQ", kUnsigned, 4, 8, "centre frequency of a QAM signal", &kCableFreqs},     //
    {"OFDM_CENT_FREQ", kUnsigned, 4, 12, "centre frequency of an OFDM signal", &kCableFreqs}, //
};

inline constexpr Column kSkypColumns[] = {
    {"CH_NO", kText, 8, 0, "name of the channel"},                    //
    {"CENT_FREQ", kUnsigned, 4, 8, "centre frequency", &kCableFreqs}, //
};

inline constexpr Column kPilotColumns[] = {
    {"CH_NO", kText, 8, 0, "name of the channel"},                    //
    {"CENT_FREQ", kUnsigned, 4, 8, "centre frequency", &kCableFreqs}, //
};

inline constexpr Column kLteColumns[] = {
    {"CH_NO", kText, 8, 0, "name of the channel"},                    //
    {"CENT_FREQ", kUnsigned, 4, 8, "centre frequency", &kCableFreqs}, //
    {"BAND_WIDE", kUnsigned, 4, 12, "bandwidth", &kBandwidths},       //
};

inline constexpr Column kFmColumns[] = {
    {"CH_NO", kText, 8, 0, "name of the channel"},                    //
    {"CENT_FREQ", kUnsigned, 4, 8, "centre frequency", &kCableFreqs}, //
};

inline constexpr Column kManuBdsysModColumns[] = {
    {"BDSYS", kUnsigned, 2, 0, "broadcast system", &kSystems}, //
    {"MOD", kUnsigned, 4, 4, "modulations", &kModulations},    //
};

inline constexpr Column kBdsysConvColumns[] = {
    {"BAND", kUnsigned, 1, 4, "band", &kBands},                //
    {"BDSYS", kUnsigned, 2, 0, "broadcast system", &kSystems}, //
    {"BDSYS_TUNE", kUnsigned, 2, 2, "its code for tuning"},    //
};

inline constexpr Column kCatvBdsysConvColumns[] = {
    {"BDSYS(CATV)", kUnsigned, 2, 4, "broadcast system", &kSystems}, //
    {"MOD", kUnsigned, 4, 0, "modulations", &kModulations},          //
    {"BDSYS_TUNE", kUnsigned, 2, 6, "its code for tuning"},          //
};

inline constexpr Column kUpStreamColumns[] = {
    {"CH_NO", kText, 8, 0, "name of the channel"},                    //
    {"CENT_FREQ", kUnsigned, 4, 8, "centre frequency", &kCableFreqs}, //
};

inline constexpr Column kPmeasMngColumns[] = {
    {"NEXT_CH_SYNC", kSigned, 4, 0, "synchronisation with the next channel"},               //
    {"SINGLE0_ISMES", kUnsigned, 1, 4, "single 0: whether and how to measure"},             //
    {"SINGLE0_MESDATA", kMeasData, 1, 5, "single 0: selection of measurement data"},        //
    {"SINGLE0_SAVEMETHOD", kUnsigned, 1, 6, "single 0: how to save"},                       //
    {"SINGLE0_TMNOSIGNAL", kUnsigned, 4, 8, "single 0: time-out, no signal"},               //
    {"SINGLE0_TMLOCK", kUnsigned, 4, 12, "single 0: time-out, lock"},                       //
    {"SINGLE0_JUDGEMESDATA", kJudgement, 2, 16, "single 0: judgement of measurement data"}, //
    {"SINGLE0_JUDGESTATUS", kJudgement, 2, 18, "single 0: judgement of the status"},        //
    {"SINGLE1_ISMES", kUnsigned, 1, 20, "single 1: whether and how to measure"},            //
    {"SINGLE1_MESDATA", kMeasData, 1, 21, "single 1: selection of measurement data"},       //
    {"SINGLE1_SAVEMETHOD", kUnsigned, 1, 22, "single 1: how to save"},                      //
    {"SINGLE1_TMNOSIGNAL", kUnsigned, 4, 24, "single 1: time-out, no signal"},              //
    {"SINGLE1_TMLOCK", kUnsigned, 4, 28, "single 1: time-out, lock"},                       //
    {"SINGLE1_JUDGEMESDATA", kJudgement, 2, 32, "single 1: judgement of measurement data"}, //
    {"SINGLE1_JUDGESTATUS", kJudgement, 2, 34, "single 1: judgement of the status"},        //
    {"MULTI0_ISMES", kUnsigned, 1, 36, "multi 0: whether and how to measure"},              //
    {"MULTI0_MESDATA", kMeasData, 1, 37, "multi 0: selection of measurement data"},         //
    {"MULTI0_SAVEMETHOD", kUnsigned, 1, 38, "multi 0: how to save"},                        //
    {"MULTI0_TMNOSIGNAL", kUnsigned, 4, 40, "multi 0: time-out, no signal"},                //
    {"MULTI0_TMLOCK", kUnsigned, 4, 44, "multi 0: time-out, lock"},                         //
    {"MULTI0_JUDGEMESDATA", kJudgement, 2, 48, "multi 0: judgement of measurement data"},   //
    {"MULTI0_JUDGESTATUS", kJudgement, 2, 50, "multi 0: judgement of the status"},          //
    {"MULTI1_ISMES", kUnsigned, 1, 52, "multi 1: whether and how to measure"},              //
    {"MULTI1_MESDATA", kMeasData, 1, 53, "multi 1: selection of measurement data"},         //
    {"MULTI1_SAVEMETHOD", kUnsigned, 1, 54, "multi 1: how to save"},                        //
    {"MULTI1_TMNOSIGNAL", kUnsigned, 4, 56, "multi 1: time-out, no signal"},                //
    {"MULTI1_TMLOCK", kUnsigned, 4, 60, "multi 1: time-out, lock"},                         //
    {"MULTI1_JUDGEMESDATA", kJudgement, 2, 64, "multi 1: judgement of measurement data"},   //
    {"MULTI1_JUDGESTATUS", kJudgement, 2, 66, "multi 1: judgement of the status"},          //
};

inline constexpr Column kLoggerSetColumns[] = {
    {"NO", kUnsigned, 1, 0, "number of the record"},                                           //
    {"ENBFLG", kUnsigned, 1, 1, "flag: enabled", &kFlag},                                      //
    {"BAND", kUnsigned, 1, 2, "band", &kBands},                                                //
    {"SPEC", kUnsigned, 1, 3, "broadcast system", &kSystems},                                  //
    {"CH", kText, 8, 4, "name of the channel"},                                                //
    {"CENTER_FREQ", kUnsigned, 4, 12, "centre frequency as broadcast", &kBroadcastFreqPlaces}, //
    {"MOD", kModulation, 4, 16, "modulations", &kModulations},                                 //
    {"LOCAL_FREQ", kUnsigned, 4, 20, "local oscillator", &kLocalFreqs},                        //
    {"GETDATA_FLG", kUnsigned, 1, 24, "flag: get data"},                                       //
    {"DC_OUT", kUnsigned, 1, 25, "DC output"},                                                 //
};

inline constexpr Column kLoggerListColumns[] = {
    {"NO", kUnsigned, 1, 0, "number of the record, from 1"},  //
    {"ENBFLG", kUnsigned, 1, 1, "flag: names a set", &kFlag}, //
    {"FILE_NAME", kText, 13, 2, "name of the set"},           //
};

inline constexpr Column kFmDefColumns[] = {
    {"CH_NO", kText, 8, 0, "name of the channel"},                         //
    {"CENT_FREQ", kUnsigned, 4, 8, "centre frequency", &kCableFreqPlaces}, //
};

inline constexpr Column kUpStreamDefColumns[] = {
    {"CH_NO", kText, 8, 0, "name of the channel"},                         //
    {"CENT_FREQ", kUnsigned, 4, 8, "centre frequency", &kCableFreqPlaces}, //
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
    const char* purpose;   // what it is for, in a few words

    // A row of kFiles.
    template <uint32_t kColumnCount>
    constexpr File(uint32_t id, const char* pathOfFile, uint32_t sizeOfRecord, uint32_t records,
                   uint32_t sizeOfDefault, const Column (&columnsOfFile)[kColumnCount],
                   const char* purposeOfFile)
        : fileId(id), path(pathOfFile), columnCount(kColumnCount), dataSize(sizeOfRecord), rows(records),
          defaultSize(sizeOfDefault), columns(columnsOfFile), purpose(purposeOfFile)
    {}
};

// The first line of every file.
inline constexpr char kVersion[] = "1.0.0";

// By file id. A row: id, path, bytes of a record, records, bytes of the factory contents, columns, purpose.
// "measrement" is how the meters spell it.
inline constexpr File kFiles[] = {
    {VX63_SET_FILE_POWOFF, "/usr/local/bin/sys_set/system_setting_file_powoff.csv", 7, 1, 7, kPowOffColumns,
     "power-off and its menu"},
    {VX63_SET_FILE_VOLUME, "/usr/local/bin/sys_set/system_setting_file_volume.csv", 5, 1, 5, kVolumeColumns,
     "volume of the buzzer and its menu"},
    {VX63_SET_FILE_BRIGHTNESS, "/usr/local/bin/sys_set/system_setting_file_brightness.csv", 4, 1, 4,
     kBrightnessColumns, "brightness of the display and its menu"},
    {VX63_SET_FILE_LOCAL_FREQ, "/usr/local/bin/meas_set/measrement_setting_file_local_freq.csv", 28, 12, 336,
     kLocalFreqColumns, "local oscillators, a record a band and polarisation group"},
    {VX63_SET_FILE_THRD, "/usr/local/bin/meas_set/measrement_setting_file_thrd.csv", 88, 24, 2112,
     kThrdColumns, "thresholds of the judgement, a record a band, system and modulation"},
    {VX63_SET_FILE_CNRMER, "/usr/local/bin/meas_set/measrement_setting_file_cnrmer.csv", 3, 15, 45,
     kCnrMerColumns, "selection of CNR or MER"},
    {VX63_SET_FILE_CATV_FREQ, "/usr/local/bin/meas_set/measrement_setting_file_catv_freq.csv", 28, 4, 112,
     kCatvFreqColumns, "frequency sets of the cable channels C24 to C27"},
    {VX63_SET_FILE_CABLE_LOSS, "/usr/local/bin/meas_set/measrement_setting_file_cable_loss.csv", 8, 4, 32,
     kCableLossColumns, "correction of the cable loss, a record a frequency"},
    {VX63_SET_FILE_CABLE_LOSS_ENB, "/usr/local/bin/meas_set/measrement_setting_file_cable_loss_enb.csv", 1, 1,
     1, kCableLossEnbColumns, "whether the cable loss is corrected"},
    {VX63_SET_FILE_INPUT, "/usr/local/bin/meas_set/measrement_setting_file_input.csv", 3, 1, 3, kInputColumns,
     "measurement input and its menu"},
    {VX63_SET_FILE_CATV_MOD, "/usr/local/bin/meas_set/measrement_setting_file_catv_mod.csv", 12, 1, 12,
     kCatvModColumns, "menu of cable modulations"},
    {VX63_SET_FILE_DC_OUT, "/usr/local/bin/meas_set/measrement_setting_file_dc_out.csv", 10, 3, 30,
     kDcOutColumns, "supply of the LNB by satellite and polarisation"},
    {VX63_SET_FILE_OPT_MEAS, "/usr/local/bin/meas_set/measrement_setting_file_opt_meas.csv", 12, 1, 12,
     kOptMeasColumns, "menu of wavelengths of the optical measurement"},
    {VX63_SET_FILE_CONSTA_NUM, "/usr/local/bin/meas_set/measrement_setting_file_consta_num.csv", 16, 1, 16,
     kConstaNumColumns, "points of a constellation and their menu"},
    {VX63_SET_FILE_USER_SET, "/usr/local/bin/user_set/%s.csv", 28, 324, 0, kUserSetColumns,
     "user set: channels under a name"},
    {VX63_SET_FILE_USER_LIST, "/usr/local/bin/user_set/user_setting_file_list.csv", 15, 140, 0,
     kUserListColumns, "list of the user sets"},
    {VX63_SET_FILE_UHF, "/usr/local/bin/ch_set/channel_setting_file_uhf_6mhz.csv", 12, 40, 480, kUhfColumns,
     "channel plan: UHF"},
    {VX63_SET_FILE_BS, "/usr/local/bin/ch_set/channel_setting_file_bs_34.5mhz.csv", 16, 24, 384,
     kSatelliteColumns, "channel plan: BS"},
    {VX63_SET_FILE_CS, "/usr/local/bin/ch_set/channel_setting_file_cs_34.5mhz.csv", 16, 26, 416,
     kSatelliteColumns, "channel plan: CS"},
    {VX63_SET_FILE_SCCB, "/usr/local/bin/ch_set/channel_setting_file_sccb_27mhz.csv", 16, 23, 368,
     kSatelliteColumns, "channel plan: SCC-B"},
    {VX63_SET_FILE_SCCC, "/usr/local/bin/ch_set/channel_setting_file_sccc_27mhz.csv", 16, 24, 384,
     kSatelliteColumns, "channel plan: SCC-C"},
    {VX63_SET_FILE_JSAT3A, "/usr/local/bin/ch_set/channel_setting_file_jsat3a_27mhz.csv", 16, 28, 448,
     kSatelliteColumns, "channel plan: JSAT 3A"},
    {VX63_SET_FILE_JSAT4B, "/usr/local/bin/ch_set/channel_setting_file_jsat4b_27mhz.csv", 16, 32, 512,
     kSatelliteColumns, "channel plan: JSAT 4B"},
    {VX63_SET_FILE_CATV_ALL, "/usr/local/bin/ch_set/channel_setting_file_catv_all_6mhz.csv", 16, 150, 2400,
     kCatvColumns, "channel plan: cable"},
    {VX63_SET_FILE_CATV_90_470MHZ, "/usr/local/bin/ch_set/channel_setting_file_catv_90_470mhz_6mhz.csv", 16,
     62, 992, kCatvColumns, "channel plan: cable, 90 to 470 MHz"},
    {VX63_SET_FILE_CATV_470_1002MHZ, "/usr/local/bin/ch_set/channel_setting_file_catv_470_1002mhz_6mhz.csv",
     16, 88, 1408, kCatvColumns, "channel plan: cable, 470 to 1002 MHz"},
    {VX63_SET_FILE_SKYP, "/usr/local/bin/ch_set/channel_setting_file_skyp_6mhz.csv", 12, 113, 1356,
     kSkypColumns, "channel plan: skyp"},
    {VX63_SET_FILE_PILOT, "/usr/local/bin/ch_set/channel_setting_file_pilot.csv", 12, 20, 240, kPilotColumns,
     "channel plan: pilots"},
    {VX63_SET_FILE_LTE, "/usr/local/bin/ch_set/channel_setting_file_lte.csv", 16, 6, 96, kLteColumns,
     "channel plan: LTE"},
    {VX63_SET_FILE_FM, "/usr/local/bin/ch_set/channel_setting_file_fm.csv", 12, 251, 3012, kFmColumns,
     "channel plan: FM"},
    {VX63_SET_FILE_MANU_BDSYS_MOD, "/usr/local/bin/meas_set/measrement_setting_file_manu_bdsys_mod.csv", 8,
     23, 184, kManuBdsysModColumns, "manual broadcast system and modulation"},
    {VX63_SET_FILE_BDSYS_CONV, "/usr/local/bin/meas_set/measrement_setting_file_bdsys_conv.csv", 6, 28, 168,
     kBdsysConvColumns, "what a band and broadcast system are called for tuning"},
    {VX63_SET_FILE_CATV_BDSYS_CONV, "/usr/local/bin/meas_set/measrement_setting_file_catv_bdsys_conv.csv", 8,
     5, 40, kCatvBdsysConvColumns, "what a cable system and modulation are called for tuning"},
    {VX63_SET_FILE_CATV_UP_STREAM, "/usr/local/bin/ch_set/channel_setting_file_catv_up_stream.csv", 12, 1001,
     12012, kUpStreamColumns, "channel plan: cable up-stream"},
    {VX63_SET_FILE_PMEAS_MNG, "/usr/local/bin/pmeas_set/pmeas_setting_file_pmeas_mng.csv", 68, 48, 3264,
     kPmeasMngColumns, "management of the measurements"},
    {VX63_SET_FILE_LOGGER_SET, "/usr/local/bin/logger_set/%s.csv", 28, 324, 0, kLoggerSetColumns,
     "logger set: channels under a name"},
    {VX63_SET_FILE_LOGGER_LIST, "/usr/local/bin/logger_set/logger_setting_file_list.csv", 15, 140, 0,
     kLoggerListColumns, "list of the logger sets"},
    {VX63_SET_FILE_JSAT3A_ANTENNA, "/usr/local/bin/ch_set/channel_setting_file_jsat3a_antenna_27mhz.csv", 16,
     16, 256, kSatelliteColumns, "channel plan: JSAT 3A antenna"},
    {VX63_SET_FILE_JSAT4B_ANTENNA, "/usr/local/bin/ch_set/channel_setting_file_jsat4b_antenna_27mhz.csv", 16,
     16, 256, kSatelliteColumns, "channel plan: JSAT 4B antenna"},
    {VX63_SET_FILE_FM_DEF, "/usr/local/bin/ch_set/channel_setting_file_fm_def.csv", 12, 12, 144,
     kFmDefColumns, "preset channels: FM"},
    {VX63_SET_FILE_CATV_UP_STREAM_DEF, "/usr/local/bin/ch_set/channel_setting_file_catv_up_stream_def.csv",
     12, 12, 144, kUpStreamDefColumns, "preset channels: cable up-stream"},
    {VX63_SET_FILE_BS_CS, "/usr/local/bin/ch_set/channel_setting_file_bs_cs_34.5mhz.csv", 16, 50, 800,
     kSatelliteColumns, "channel plan: BS and CS together"},
    {VX63_SET_FILE_USER_SET_USB1, "/usr/local/bin/user_set_usb1/%s.csv", 28, 324, 0, kUserSetColumns,
     "user set: channels under a name, on USB memory 1"},
    {VX63_SET_FILE_USER_LIST_USB1, "/usr/local/bin/user_set_usb1/user_setting_file_list.csv", 15, 140, 0,
     kUserListColumns, "list of the user sets, on USB memory 1"},
    {VX63_SET_FILE_USER_SET_USB2, "/usr/local/bin/user_set_usb2/%s.csv", 28, 324, 0, kUserSetColumns,
     "user set: channels under a name, on USB memory 2"},
    {VX63_SET_FILE_USER_LIST_USB2, "/usr/local/bin/user_set_usb2/user_setting_file_list.csv", 15, 140, 0,
     kUserListColumns, "list of the user sets, on USB memory 2"},
    {VX63_SET_FILE_LOGGER_SET_USB1, "/usr/local/bin/logger_set_usb1/%s.csv", 28, 324, 0, kLoggerSetColumns,
     "logger set: channels under a name, on USB memory 1"},
    {VX63_SET_FILE_LOGGER_LIST_USB1, "/usr/local/bin/logger_set_usb1/logger_setting_file_list.csv", 15, 140,
     0, kLoggerListColumns, "list of the logger sets, on USB memory 1"},
    {VX63_SET_FILE_LOGGER_SET_USB2, "/usr/local/bin/logger_set_usb2/%s.csv", 28, 324, 0, kLoggerSetColumns,
     "logger set: channels under a name, on USB memory 2"},
    {VX63_SET_FILE_LOGGER_LIST_USB2, "/usr/local/bin/logger_set_usb2/logger_setting_file_list.csv", 15, 140,
     0, kLoggerListColumns, "list of the logger sets, on USB memory 2"},
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

#include "setfile/catalogue.h"

#include "setfile/columns.h"
#include "setfile/default_tables.h"
#include "setfile/file_kind.h"
#include "setfile/set_path.h"

#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace vx63 {

// Not defined: what calls it while it compiles, does not compile.
void catalogueIsWrong();

namespace {

constexpr char kVersion[] = "1.0.0";

// Factory contents with their measures.
struct Factory {
    const void* data = nullptr;
    size_t rows = 0;
    size_t recordSize = 0;

    consteval Factory() = default;
    template <size_t kRows, size_t kRecordSize>
    consteval Factory(const Records<kRows, kRecordSize>& records)
        : data(&records), rows(kRows), recordSize(kRecordSize)
    {}
    template <size_t kRows>
    consteval Factory(const MeasSetManuBdsysMod (&records)[kRows])
        : data(&records), rows(kRows), recordSize(sizeof(MeasSetManuBdsysMod))
    {}
};
constexpr Factory kNone;
constexpr const auto& kManuBdsysMod = g_measSetManuBdsysModDef;

struct Row {
    uint32_t fileId;
    const char* path;
    uint32_t columnCount;
    uint32_t dataSize;
    uint32_t rows;
    Factory factory;
    uint32_t defaultSize;
};

// "measrement" is how the meters spell it.
constexpr Row kRows[] = {
    {0, "/usr/local/bin/sys_set/system_setting_file_powoff.csv", 7, 7, 1, kPowOff, 7},
    {1, "/usr/local/bin/sys_set/system_setting_file_volume.csv", 5, 5, 1, kVolume, 5},
    {2, "/usr/local/bin/sys_set/system_setting_file_brightness.csv", 4, 4, 1, kBrightness, 4},
    {3, "/usr/local/bin/meas_set/measrement_setting_file_local_freq.csv", 8, 28, 12, kLocalFreq, 336},
    {4, "/usr/local/bin/meas_set/measrement_setting_file_thrd.csv", 23, 88, 24, kThrd, 2112},
    {5, "/usr/local/bin/meas_set/measrement_setting_file_cnrmer.csv", 3, 3, 15, kCnrMer, 45},
    {6, "/usr/local/bin/meas_set/measrement_setting_file_catv_freq.csv", 8, 28, 4, kCatvFreq, 112},
    {7, "/usr/local/bin/meas_set/measrement_setting_file_cable_loss.csv", 2, 8, 4, kCableLoss, 32},
    {8, "/usr/local/bin/meas_set/measrement_setting_file_cable_loss_enb.csv", 1, 1, 1, kCableLossEnb, 1},
    {9, "/usr/local/bin/meas_set/measrement_setting_file_input.csv", 3, 3, 1, kInput, 3},
    {10, "/usr/local/bin/meas_set/measrement_setting_file_catv_mod.csv", 3, 12, 1, kCatvMod, 12},
    {11, "/usr/local/bin/meas_set/measrement_setting_file_dc_out.csv", 10, 10, 3, kDcOut, 30},
    {12, "/usr/local/bin/meas_set/measrement_setting_file_opt_meas.csv", 3, 12, 1, kOptMeas, 12},
    {13, "/usr/local/bin/meas_set/measrement_setting_file_consta_num.csv", 4, 16, 1, kConstaNum, 16},
    {14, "/usr/local/bin/user_set/%s.csv", 10, 28, 324, kNone, 0},
    {15, "/usr/local/bin/user_set/user_setting_file_list.csv", 3, 15, 140, kNone, 0},
    {16, "/usr/local/bin/ch_set/channel_setting_file_uhf_6mhz.csv", 2, 12, 40, kUhf, 480},
    {17, "/usr/local/bin/ch_set/channel_setting_file_bs_34.5mhz.csv", 3, 16, 24, kBs, 384},
    {18, "/usr/local/bin/ch_set/channel_setting_file_cs_34.5mhz.csv", 3, 16, 26, kCs, 416},
    {19, "/usr/local/bin/ch_set/channel_setting_file_sccb_27mhz.csv", 3, 16, 23, kSccb, 368},
    {20, "/usr/local/bin/ch_set/channel_setting_file_sccc_27mhz.csv", 3, 16, 24, kSccc, 384},
    {21, "/usr/local/bin/ch_set/channel_setting_file_jsat3a_27mhz.csv", 3, 16, 28, kJsat3a, 448},
    {22, "/usr/local/bin/ch_set/channel_setting_file_jsat4b_27mhz.csv", 3, 16, 32, kJsat4b, 512},
    {23, "/usr/local/bin/ch_set/channel_setting_file_catv_all_6mhz.csv", 3, 16, 150, kCatvAll, 2400},
    {24, "/usr/local/bin/ch_set/channel_setting_file_catv_90_470mhz_6mhz.csv", 3, 16, 62, kCatvLow, 992},
    {25, "/usr/local/bin/ch_set/channel_setting_file_catv_470_1002mhz_6mhz.csv", 3, 16, 88, kCatvHigh, 1408},
    {26, "/usr/local/bin/ch_set/channel_setting_file_skyp_6mhz.csv", 2, 12, 113, kSkyp, 1356},
    {27, "/usr/local/bin/ch_set/channel_setting_file_pilot.csv", 2, 12, 20, kPilot, 240},
    {28, "/usr/local/bin/ch_set/channel_setting_file_lte.csv", 3, 16, 6, kLte, 96},
    {29, "/usr/local/bin/ch_set/channel_setting_file_fm.csv", 2, 12, 251, kFm, 3012},
    {30, "/usr/local/bin/meas_set/measrement_setting_file_manu_bdsys_mod.csv", 2, 8, 23, kManuBdsysMod, 184},
    {31, "/usr/local/bin/meas_set/measrement_setting_file_bdsys_conv.csv", 3, 6, 28, kBdsysConv, 168},
    {32, "/usr/local/bin/meas_set/measrement_setting_file_catv_bdsys_conv.csv", 3, 8, 5, kCatvBdsysConv, 40},
    {33, "/usr/local/bin/ch_set/channel_setting_file_catv_up_stream.csv", 2, 12, 1001, kUpStream, 12012},
    {34, "/usr/local/bin/pmeas_set/pmeas_setting_file_pmeas_mng.csv", 29, 68, 48, kPmeasMng, 3264},
    {35, "/usr/local/bin/logger_set/%s.csv", 10, 28, 324, kNone, 0},
    {36, "/usr/local/bin/logger_set/logger_setting_file_list.csv", 3, 15, 140, kNone, 0},
    {37, "/usr/local/bin/ch_set/channel_setting_file_jsat3a_antenna_27mhz.csv", 3, 16, 16, kJsat3aAnt, 256},
    {38, "/usr/local/bin/ch_set/channel_setting_file_jsat4b_antenna_27mhz.csv", 3, 16, 16, kJsat4bAnt, 256},
    {39, "/usr/local/bin/ch_set/channel_setting_file_fm_def.csv", 2, 12, 12, kFmDef, 144},
    {40, "/usr/local/bin/ch_set/channel_setting_file_catv_up_stream_def.csv", 2, 12, 12, kUpStreamDef, 144},
    {41, "/usr/local/bin/ch_set/channel_setting_file_bs_cs_34.5mhz.csv", 3, 16, 50, kBsCs, 800},
    {42, "/usr/local/bin/user_set_usb1/%s.csv", 10, 28, 324, kNone, 0},
    {43, "/usr/local/bin/user_set_usb1/user_setting_file_list.csv", 3, 15, 140, kNone, 0},
    {44, "/usr/local/bin/user_set_usb2/%s.csv", 10, 28, 324, kNone, 0},
    {45, "/usr/local/bin/user_set_usb2/user_setting_file_list.csv", 3, 15, 140, kNone, 0},
    {46, "/usr/local/bin/logger_set_usb1/%s.csv", 10, 28, 324, kNone, 0},
    {47, "/usr/local/bin/logger_set_usb1/logger_setting_file_list.csv", 3, 15, 140, kNone, 0},
    {48, "/usr/local/bin/logger_set_usb2/%s.csv", 10, 28, 324, kNone, 0},
    {49, "/usr/local/bin/logger_set_usb2/logger_setting_file_list.csv", 3, 15, 140, kNone, 0},
};

using Catalogue = std::array<SetFileDef, VX63_SET_FILE_COUNT>;

// Files that share a table of columns.
template <const auto& kColumns>
consteval void describe(Catalogue& catalogue, std::initializer_list<uint32_t> fileIds)
{
    for (const uint32_t fileId : fileIds) {
        SetFileDef& def = catalogue.at(fileId);
        if (def.columns != nullptr || def.columnCount != std::size(kColumns)) {
            catalogueIsWrong();
        }
        def.header = Layout<kColumns>::kHeader.data();
        def.columns = Layout<kColumns>::kDescriptors.data();
    }
}

consteval Catalogue makeCatalogue()
{
    Catalogue catalogue = {};
    uint32_t fileId = 0;
    for (const Row& row : kRows) {
        if (row.fileId != fileId) {
            catalogueIsWrong();
        }
        catalogue.at(fileId++) = {.path = row.path,
                                  .version = kVersion,
                                  .header = nullptr,
                                  .columns = nullptr,
                                  .columnCount = row.columnCount,
                                  .dataSize = row.dataSize,
                                  .rows = row.rows,
                                  .defaultData = row.factory.data,
                                  .defaultSize = row.defaultSize};
    }
    describe<kPowOffColumns>(catalogue, {0});
    describe<kVolumeColumns>(catalogue, {1});
    describe<kBrightnessColumns>(catalogue, {2});
    describe<kLocalFreqColumns>(catalogue, {3});
    describe<kThrdColumns>(catalogue, {4});
    describe<kCnrMerColumns>(catalogue, {5});
    describe<kCatvFreqColumns>(catalogue, {6});
    describe<kCableLossColumns>(catalogue, {7});
    describe<kCableLossEnbColumns>(catalogue, {8});
    describe<kInputColumns>(catalogue, {9});
    describe<kCatvModColumns>(catalogue, {10});
    describe<kDcOutColumns>(catalogue, {11});
    describe<kOptMeasColumns>(catalogue, {12});
    describe<kConstaNumColumns>(catalogue, {13});
    describe<kUserSetColumns>(catalogue, {14, 42, 44});
    describe<kUserListColumns>(catalogue, {15, 43, 45});
    describe<kUhfColumns>(catalogue, {16});
    describe<kSatelliteColumns>(catalogue, {17, 18, 19, 20, 21, 22, 37, 38, 41});
    describe<kCatvColumns>(catalogue, {23, 24, 25});
    describe<kSkypColumns>(catalogue, {26});
    describe<kPilotColumns>(catalogue, {27});
    describe<kLteColumns>(catalogue, {28});
    describe<kFmColumns>(catalogue, {29});
    describe<kManuBdsysModColumns>(catalogue, {30});
    describe<kBdsysConvColumns>(catalogue, {31});
    describe<kCatvBdsysConvColumns>(catalogue, {32});
    describe<kUpStreamColumns>(catalogue, {33});
    describe<kPmeasMngColumns>(catalogue, {34});
    describe<kLoggerSetColumns>(catalogue, {35, 46, 48});
    describe<kLoggerListColumns>(catalogue, {36, 47, 49});
    describe<kFmDefColumns>(catalogue, {39});
    describe<kUpStreamDefColumns>(catalogue, {40});
    return catalogue;
}

} // namespace

constexpr Catalogue kCatalogue = makeCatalogue();

// ---- What holds in every row ----

namespace {

consteval bool everyRow(bool (*holds)(uint32_t fileId, const SetFileDef& def))
{
    for (uint32_t fileId = 0; fileId < kCatalogue.size(); ++fileId) {
        if (!holds(fileId, kCatalogue[fileId])) {
            return false;
        }
    }
    return true;
}

consteval bool everyColumn(bool (*holds)(const LsysColumn& column, const SetFileDef& def))
{
    for (const SetFileDef& def : kCatalogue) {
        for (uint32_t i = 0; i < def.columnCount; ++i) {
            if (!holds(def.columns[i], def)) {
                return false;
            }
        }
    }
    return true;
}

constexpr size_t count(std::string_view text, char letter)
{
    size_t found = 0;
    for (const char each : text) {
        found += each == letter ? 1 : 0;
    }
    return found;
}

constexpr std::string_view folderOf(const SetFileDef& def)
{
    const std::string_view path = def.path;
    return path.substr(0, path.rfind('/') + 1);
}

static_assert(std::size(kRows) == 50 && kCatalogue.size() == 50);

static_assert(everyRow([](uint32_t, const SetFileDef& def) {
    return def.version == std::string_view("1.0.0");
}));

// Every file has a header, which names its columns, without blanks.
static_assert(everyRow([](uint32_t, const SetFileDef& def) {
    return count(def.header, ',') + 1 == def.columnCount && count(def.header, ' ') == 0;
}));

// A path is formatted once, with a set's name, and only where there is one.
static_assert(everyRow([](uint32_t fileId, const SetFileDef& def) {
    const std::string_view path = def.path;
    const bool named = path.ends_with("/%s.csv") && count(path, '%') == 1;
    return path.starts_with("/usr/local/bin/") && path.ends_with(".csv") &&
           (isSet(fileId) ? named : count(path, '%') == 0);
}));

// A set's name as long as its list holds it always fits the buffer.
static_assert(everyRow([](uint32_t, const SetFileDef& def) {
    return std::string_view(def.path).size() + 12 < kSetPathSize;
}));

// Factory contents are a whole file; sets and lists have none.
static_assert(everyRow([](uint32_t fileId, const SetFileDef& def) {
    const Factory& factory = kRows[fileId].factory;
    return isSetOrList(fileId) ? factory.rows == 0 && def.defaultSize == 0
                               : factory.rows == def.rows && factory.recordSize == def.dataSize &&
                                     def.defaultSize == def.rows * def.dataSize;
}));

// Every file fits the staging buffer, and the largest fills it.
static_assert(everyRow([](uint32_t, const SetFileDef& def) {
    return def.rows * def.dataSize <= kFileSizeMax;
}));
static_assert(kCatalogue[VX63_SET_FILE_CATV_UP_STREAM].rows *
                  kCatalogue[VX63_SET_FILE_CATV_UP_STREAM].dataSize ==
              kFileSizeMax);

static_assert(everyColumn([](const LsysColumn& column, const SetFileDef& def) {
    return column.ulOffset + column.ulWidth <= def.dataSize;
}));

static_assert(everyColumn([](const LsysColumn& column, const SetFileDef&) {
    switch (column.ulType) {
    case kMeasData:
        return column.ulWidth == 1;
    case kJudgement:
        return column.ulWidth == 2;
    case kModulation:
    case kSigned:
        return column.ulWidth == 4;
    case kUnsigned:
        return column.ulWidth == 1 || column.ulWidth == 2 || column.ulWidth == 4;
    case kText:
        return column.ulWidth == 8 || column.ulWidth == 13;
    default:
        return false;
    }
}));

// Numbers are aligned as in a structure of the host, records too.
static_assert(everyColumn([](const LsysColumn& column, const SetFileDef& def) {
    return column.ulType == kText ||
           (column.ulOffset % column.ulWidth == 0 && def.dataSize % column.ulWidth == 0);
}));

static_assert(everyColumn([](const LsysColumn& column, const SetFileDef& def) {
    for (uint32_t i = 0; i < def.columnCount; ++i) {
        const LsysColumn& other = def.columns[i];
        if (&other != &column && column.ulOffset < other.ulOffset + other.ulWidth &&
            other.ulOffset < column.ulOffset + column.ulWidth) {
            return false; // they overlap
        }
    }
    return true;
}));

// The pairs of set and list: one per set, in the order of the ids, both in one folder.
consteval bool pairsAreRight()
{
    size_t pair = 0;
    for (uint32_t fileId = 0; fileId < kCatalogue.size(); ++fileId) {
        if (!isSet(fileId)) {
            continue;
        }
        if (pair == std::size(kSetPairs) || static_cast<uint32_t>(kSetPairs[pair].set) != fileId) {
            return false;
        }
        const uint32_t list = static_cast<uint32_t>(kSetPairs[pair].list);
        const FileKind listKind =
            kindOf(fileId) == FileKind::userSet ? FileKind::userList : FileKind::loggerList;
        if (kindOf(list) != listKind || folderOf(kCatalogue[list]) != folderOf(kCatalogue[fileId])) {
            return false;
        }
        ++pair;
    }
    return pair == std::size(kSetPairs);
}
static_assert(pairsAreRight());

// ---- The public records of settings files ----

template <const auto& kColumns>
consteval bool laidOut(std::initializer_list<size_t> offsets)
{
    size_t i = 0;
    for (const size_t offset : offsets) {
        if (i == std::size(kColumns) || kColumns[i++].offset != offset) {
            return false;
        }
    }
    return i == std::size(kColumns);
}

static_assert(sizeof(SetChannel) == kCatalogue[VX63_SET_FILE_USER_SET].dataSize);
static_assert(laidOut<kUserSetColumns>({offsetof(SetChannel, NO), offsetof(SetChannel, ENBFLG),
                                        offsetof(SetChannel, BAND), offsetof(SetChannel, SPEC),
                                        offsetof(SetChannel, CH), offsetof(SetChannel, CENTER_FREQ),
                                        offsetof(SetChannel, MOD), offsetof(SetChannel, LOCAL_FREQ),
                                        offsetof(SetChannel, GETDATA_FLG), offsetof(SetChannel, DC_OUT)}));

static_assert(sizeof(SetListEntry) == kCatalogue[VX63_SET_FILE_USER_LIST].dataSize);
static_assert(laidOut<kUserListColumns>({offsetof(SetListEntry, NO), offsetof(SetListEntry, ENBFLG),
                                         offsetof(SetListEntry, FILE_NAME)}));

static_assert(laidOut<kManuBdsysModColumns>({offsetof(MeasSetManuBdsysMod, BDSYS),
                                             offsetof(MeasSetManuBdsysMod, MOD)}));

} // namespace
} // namespace vx63

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
constexpr const auto& kManuBdsysMod = g_measSetManuBdsysModDef;

// Where a file has factory contents.
struct FactoryRow {
    uint32_t fileId;
    Factory factory;
};
constexpr FactoryRow kFactoryRows[] = {
    {0, kPowOff},         //
    {1, kVolume},         //
    {2, kBrightness},     //
    {3, kLocalFreq},      //
    {4, kThrd},           //
    {5, kCnrMer},         //
    {6, kCatvFreq},       //
    {7, kCableLoss},      //
    {8, kCableLossEnb},   //
    {9, kInput},          //
    {10, kCatvMod},       //
    {11, kDcOut},         //
    {12, kOptMeas},       //
    {13, kConstaNum},     //
    {16, kUhf},           //
    {17, kBs},            //
    {18, kCs},            //
    {19, kSccb},          //
    {20, kSccc},          //
    {21, kJsat3a},        //
    {22, kJsat4b},        //
    {23, kCatvAll},       //
    {24, kCatvLow},       //
    {25, kCatvHigh},      //
    {26, kSkyp},          //
    {27, kPilot},         //
    {28, kLte},           //
    {29, kFm},            //
    {30, kManuBdsysMod},  //
    {31, kBdsysConv},     //
    {32, kCatvBdsysConv}, //
    {33, kUpStream},      //
    {34, kPmeasMng},      //
    {37, kJsat3aAnt},     //
    {38, kJsat4bAnt},     //
    {39, kFmDef},         //
    {40, kUpStreamDef},   //
    {41, kBsCs},          //
};

constexpr Factory factoryOf(uint32_t fileId)
{
    Factory factory;
    for (const FactoryRow& row : kFactoryRows) {
        if (row.fileId == fileId) {
            factory = row.factory;
        }
    }
    return factory;
}

using Catalogue = std::array<SetFileDef, VX63_SET_FILE_COUNT>;

// The files that share a table of columns.
template <const auto& kColumns>
consteval void describe(Catalogue& catalogue)
{
    for (const SettingsFile& file : kSettingsFiles) {
        if (file.columns != kColumns) {
            continue;
        }
        SetFileDef& def = catalogue.at(file.fileId);
        if (def.columnCount != std::size(kColumns)) {
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
    for (const SettingsFile& file : kSettingsFiles) {
        if (file.fileId != fileId) {
            catalogueIsWrong();
        }
        catalogue.at(fileId++) = {.path = file.path,
                                  .version = kSettingsVersion,
                                  .header = nullptr,
                                  .columns = nullptr,
                                  .columnCount = file.columnCount,
                                  .dataSize = file.dataSize,
                                  .rows = file.rows,
                                  .defaultData = factoryOf(file.fileId).data,
                                  .defaultSize = file.defaultSize};
    }
    describe<kPowOffColumns>(catalogue);
    describe<kVolumeColumns>(catalogue);
    describe<kBrightnessColumns>(catalogue);
    describe<kLocalFreqColumns>(catalogue);
    describe<kThrdColumns>(catalogue);
    describe<kCnrMerColumns>(catalogue);
    describe<kCatvFreqColumns>(catalogue);
    describe<kCableLossColumns>(catalogue);
    describe<kCableLossEnbColumns>(catalogue);
    describe<kInputColumns>(catalogue);
    describe<kCatvModColumns>(catalogue);
    describe<kDcOutColumns>(catalogue);
    describe<kOptMeasColumns>(catalogue);
    describe<kConstaNumColumns>(catalogue);
    describe<kUserSetColumns>(catalogue);
    describe<kUserListColumns>(catalogue);
    describe<kUhfColumns>(catalogue);
    describe<kSatelliteColumns>(catalogue);
    describe<kCatvColumns>(catalogue);
    describe<kSkypColumns>(catalogue);
    describe<kPilotColumns>(catalogue);
    describe<kLteColumns>(catalogue);
    describe<kFmColumns>(catalogue);
    describe<kManuBdsysModColumns>(catalogue);
    describe<kBdsysConvColumns>(catalogue);
    describe<kCatvBdsysConvColumns>(catalogue);
    describe<kUpStreamColumns>(catalogue);
    describe<kPmeasMngColumns>(catalogue);
    describe<kLoggerSetColumns>(catalogue);
    describe<kLoggerListColumns>(catalogue);
    describe<kFmDefColumns>(catalogue);
    describe<kUpStreamDefColumns>(catalogue);
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

static_assert(std::size(kSettingsFiles) == 50 && kCatalogue.size() == 50);

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
    const Factory factory = factoryOf(fileId);
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

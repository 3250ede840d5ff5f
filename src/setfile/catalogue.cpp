#include "setfile/catalogue.h"

#include "setfile/columns.h"
#include "setfile/default_tables.h"
#include "setfile/file_kind.h"
#include "setfile/set_path.h"

#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace vx63 {

namespace {

using settings::kFiles;

// Files whose columns are one table share what is made of it, under the id of the first.
consteval uint32_t firstWithColumnsOf(uint32_t fileId)
{
    uint32_t first = 0;
    while (kFiles[first].columns != kFiles[fileId].columns) {
        ++first;
    }
    return first;
}

// The row of a set or a list, which has no factory contents.
template <uint32_t kFileId>
consteval SetFileDef describe()
{
    constexpr const settings::File& kFile = kFiles[kFileId];
    using Columns = Layout<firstWithColumnsOf(kFileId)>;
    static_assert(kFile.defaultSize <= UINT16_MAX && kFile.columnCount <= UINT16_MAX &&
                  kFile.dataSize <= UINT16_MAX && kFile.rows <= UINT16_MAX);
    return {.path = kFile.path,
            .header = Columns::kHeader.data(),
            .columns = Columns::kDescriptors.data(),
            .defaultData = nullptr,
            .defaultSize = kFile.defaultSize,
            .columnCount = kFile.columnCount,
            .dataSize = kFile.dataSize,
            .rows = kFile.rows};
}

// The row of any other file.
template <uint32_t kFileId>
consteval SetFileDef describe(const Records<kFileId>& records)
{
    SetFileDef def = describe<kFileId>();
    def.defaultData = &records;
    return def;
}

template <uint32_t kFileId>
consteval SetFileDef describe(const MeasSetManuBdsysMod (&records)[kFiles[kFileId].rows])
{
    static_assert(sizeof(MeasSetManuBdsysMod) == kFiles[kFileId].dataSize);
    SetFileDef def = describe<kFileId>();
    def.defaultData = &records;
    return def;
}

} // namespace

constexpr std::array<SetFileDef, VX63_SET_FILE_COUNT> kCatalogue = {
    describe<VX63_SET_FILE_POWOFF>(kPowOff),
    describe<VX63_SET_FILE_VOLUME>(kVolume),
    describe<VX63_SET_FILE_BRIGHTNESS>(kBrightness),
    describe<VX63_SET_FILE_LOCAL_FREQ>(kLocalFreq),
    describe<VX63_SET_FILE_THRD>(kThrd),
    describe<VX63_SET_FILE_CNRMER>(kCnrMer),
    describe<VX63_SET_FILE_CATV_FREQ>(kCatvFreq),
    describe<VX63_SET_FILE_CABLE_LOSS>(kCableLoss),
    describe<VX63_SET_FILE_CABLE_LOSS_ENB>(kCableLossEnb),
    describe<VX63_SET_FILE_INPUT>(kInput),
    describe<VX63_SET_FILE_CATV_MOD>(kCatvMod),
    describe<VX63_SET_FILE_DC_OUT>(kDcOut),
    describe<VX63_SET_FILE_OPT_MEAS>(kOptMeas),
    describe<VX63_SET_FILE_CONSTA_NUM>(kConstaNum),
    describe<VX63_SET_FILE_USER_SET>(),
    describe<VX63_SET_FILE_USER_LIST>(),
    describe<VX63_SET_FILE_UHF>(kUhf),
    describe<VX63_SET_FILE_BS>(kBs),
    describe<VX63_SET_FILE_CS>(kCs),
    describe<VX63_SET_FILE_SCCB>(kSccb),
    describe<VX63_SET_FILE_SCCC>(kSccc),
    describe<VX63_SET_FILE_JSAT3A>(kJsat3a),
    describe<VX63_SET_FILE_JSAT4B>(kJsat4b),
    describe<VX63_SET_FILE_CATV_ALL>(kCatvAll),
    describe<VX63_SET_FILE_CATV_90_470MHZ>(kCatvLow),
    describe<VX63_SET_FILE_CATV_470_1002MHZ>(kCatvHigh),
    describe<VX63_SET_FILE_SKYP>(kSkyp),
    describe<VX63_SET_FILE_PILOT>(kPilot),
    describe<VX63_SET_FILE_LTE>(kLte),
    describe<VX63_SET_FILE_FM>(kFm),
    describe<VX63_SET_FILE_MANU_BDSYS_MOD>(g_measSetManuBdsysModDef),
    describe<VX63_SET_FILE_BDSYS_CONV>(kBdsysConv),
    describe<VX63_SET_FILE_CATV_BDSYS_CONV>(kCatvBdsysConv),
    describe<VX63_SET_FILE_CATV_UP_STREAM>(kUpStream),
    describe<VX63_SET_FILE_PMEAS_MNG>(kPmeasMng),
    describe<VX63_SET_FILE_LOGGER_SET>(),
    describe<VX63_SET_FILE_LOGGER_LIST>(),
    describe<VX63_SET_FILE_JSAT3A_ANTENNA>(kJsat3aAnt),
    describe<VX63_SET_FILE_JSAT4B_ANTENNA>(kJsat4bAnt),
    describe<VX63_SET_FILE_FM_DEF>(kFmDef),
    describe<VX63_SET_FILE_CATV_UP_STREAM_DEF>(kUpStreamDef),
    describe<VX63_SET_FILE_BS_CS>(kBsCs),
    describe<VX63_SET_FILE_USER_SET_USB1>(),
    describe<VX63_SET_FILE_USER_LIST_USB1>(),
    describe<VX63_SET_FILE_USER_SET_USB2>(),
    describe<VX63_SET_FILE_USER_LIST_USB2>(),
    describe<VX63_SET_FILE_LOGGER_SET_USB1>(),
    describe<VX63_SET_FILE_LOGGER_LIST_USB1>(),
    describe<VX63_SET_FILE_LOGGER_SET_USB2>(),
    describe<VX63_SET_FILE_LOGGER_LIST_USB2>(),
};

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

consteval std::string_view folderOf(const SetFileDef& def)
{
    const std::string_view path = def.path;
    return path.substr(0, path.rfind('/') + 1);
}

static_assert(std::size(kFiles) == 50 && kCatalogue.size() == 50);

// Both tables lie in the order of the ids.
static_assert(everyRow([](uint32_t fileId, const SetFileDef& def) {
    return kFiles[fileId].fileId == fileId && def.path == std::string_view(kFiles[fileId].path);
}));

static_assert(settings::kVersion == std::string_view("1.0.0"));

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
    return isSetOrList(fileId) ? def.defaultData == nullptr && def.defaultSize == 0
                               : def.defaultData != nullptr && def.defaultSize == def.rows * def.dataSize;
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
    case settings::kMeasData:
        return column.ulWidth == 1;
    case settings::kJudgement:
        return column.ulWidth == 2;
    case settings::kModulation:
    case settings::kSigned:
        return column.ulWidth == 4;
    case settings::kUnsigned:
        return column.ulWidth == 1 || column.ulWidth == 2 || column.ulWidth == 4;
    case settings::kText:
        return column.ulWidth == 8 || column.ulWidth == 13;
    default:
        return false;
    }
}));

// Numbers are aligned as in a structure of the host, records too.
static_assert(everyColumn([](const LsysColumn& column, const SetFileDef& def) {
    return column.ulType == settings::kText ||
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
        if (pair == std::size(settings::kSetPairs) ||
            static_cast<uint32_t>(settings::kSetPairs[pair].set) != fileId) {
            return false;
        }
        const uint32_t list = static_cast<uint32_t>(settings::kSetPairs[pair].list);
        const FileKind listKind =
            kindOf(fileId) == FileKind::userSet ? FileKind::userList : FileKind::loggerList;
        if (kindOf(list) != listKind || folderOf(kCatalogue[list]) != folderOf(kCatalogue[fileId])) {
            return false;
        }
        ++pair;
    }
    return pair == std::size(settings::kSetPairs);
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
static_assert(laidOut<settings::kUserSetColumns>({offsetof(SetChannel, NO), offsetof(SetChannel, ENBFLG),
                                                  offsetof(SetChannel, BAND), offsetof(SetChannel, SPEC),
                                                  offsetof(SetChannel, CH), offsetof(SetChannel, CENTER_FREQ),
                                                  offsetof(SetChannel, MOD), offsetof(SetChannel, LOCAL_FREQ),
                                                  offsetof(SetChannel, GETDATA_FLG),
                                                  offsetof(SetChannel, DC_OUT)}));

static_assert(sizeof(SetListEntry) == kCatalogue[VX63_SET_FILE_USER_LIST].dataSize);
static_assert(laidOut<settings::kUserListColumns>({offsetof(SetListEntry, NO), offsetof(SetListEntry, ENBFLG),
                                                   offsetof(SetListEntry, FILE_NAME)}));

static_assert(laidOut<settings::kManuBdsysModColumns>({offsetof(MeasSetManuBdsysMod, BDSYS),
                                                       offsetof(MeasSetManuBdsysMod, MOD)}));

} // namespace
} // namespace vx63

#include "services/settings_files.h"

#include "failure.h"
#include "lsys.h"
#include "setfile/catalogue.h"
#include "setfile/file_kind.h"

#include <algorithm>
#include <string_view>

namespace vmeter {
namespace {

namespace fs = std::filesystem;
using vx63::kCatalogue;
using vx63::SetFileDef;

// The path of a file of the catalogue below the program folder: "ch_set/uhf.csv".
std::string_view pathOf(const SetFileDef& file)
{
    return std::string_view(file.path).substr(std::string_view(kProgramFolder).size() + 1);
}

// Where a file of the catalogue lies here.
fs::path placeOf(const Settings& settings, const SetFileDef& file)
{
    return settings.folder / pathOf(file);
}

// A list without names: its records are numbered from 1.
std::vector<uint8_t> emptyList(const SetFileDef& list)
{
    std::vector<uint8_t> records(std::size_t{list.rows} * list.dataSize);
    for (uint32_t i = 0; i < list.rows; ++i)
        records[std::size_t{i} * list.dataSize] = static_cast<uint8_t>(i + 1);
    return records;
}

// Gives the result of lsys.
int32_t writeFactory(const Settings& settings, uint32_t fileId)
{
    const SetFileDef& file = kCatalogue[fileId];
    std::vector<uint8_t> list;
    const auto* records = static_cast<const uint8_t*>(file.defaultData);
    if (records == nullptr) {
        list = emptyList(file);
        records = list.data();
    }
    return lsys_writeCsvNewFmt(placeOf(settings, file).c_str(), vx63::settings::kVersion, file.header,
                               file.rows, file.columnCount, records, file.dataSize, file.columns);
}

void emptyFolder(const fs::path& folder)
{
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        fs::remove_all(entry.path());
}

// All files or none: a folder that holds some would count as filled the next time.
void fillFolder(const Settings& settings, const std::string& name)
{
    for (uint32_t fileId = 0; fileId < kCatalogue.size(); ++fileId) {
        if (!pathOf(kCatalogue[fileId]).starts_with(name + "/") || vx63::isSet(fileId))
            continue;
        const int32_t result = writeFactory(settings, fileId);
        if (result >= 0)
            continue;
        emptyFolder(settings.folder / name);
        throw Failure(placeOf(settings, kCatalogue[fileId]),
                      "it cannot be written, lsys_err=" + std::to_string(result),
                      "free some space, or use --empty-settings");
    }
}

ReadBack readFile(const SetFileDef& file, const fs::path& path)
{
    ReadBack read{path, 0, std::vector<uint8_t>(std::size_t{file.rows} * file.dataSize)};
    read.records = lsys_readCsvNewFmt(path.c_str(), vx63::settings::kVersion, file.rows, file.columnCount,
                                      read.content.data(), file.dataSize, file.columns);
    return read;
}

} // namespace

void fillSettings(const Settings& settings)
{
    for (const char* const name : kSettingsFolders) {
        const fs::path folder = settings.folder / name;
        std::error_code error;
        const bool empty = fs::is_empty(folder, error);
        if (error)
            throw Failure(folder, error.message(), "create it as a folder");
        if (empty)
            fillFolder(settings, name);
    }
}

bool restoreSettings(const Settings& settings)
{
    if (!settings.own)
        return false;
    try {
        for (const char* const name : kSettingsFolders)
            emptyFolder(settings.folder / name);
        fillSettings(settings);
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

ReadBack readSettings(const Settings& settings, uint8_t fileId)
{
    const SetFileDef& file = kCatalogue[fileId];
    const fs::path path = placeOf(settings, file);
    if (!vx63::isSet(fileId))
        return readFile(file, path);

    // The notice of a set does not tell its name.
    const fs::path folder = path.parent_path();
    const SetFileDef& list = kCatalogue[static_cast<uint32_t>(std::ranges::find(vx63::settings::kSetPairs,
                                                                                static_cast<int32_t>(fileId),
                                                                                &vx63::settings::SetPair::set)
                                                                  ->list)];
    ReadBack all = readFile(list, placeOf(settings, list));
    if (all.records < 0)
        return all;
    all = {path, static_cast<int32_t>(file.rows), {}};
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (entry->path().extension() != ".csv" || entry->path() == placeOf(settings, list))
            continue;
        if (ReadBack one = readFile(file, entry->path()); one.records < 0)
            return one;
    }
    return all;
}

} // namespace vmeter

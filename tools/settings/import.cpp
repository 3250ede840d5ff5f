// vx63 settings import: take over the settings files of a folder, all or none.
#include "common/confirm.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/output.h"
#include "common/text.h"
#include "settings/arguments.h"
#include "settings/file.h"
#include "settings/meaning.h"
#include "settings/set_list.h"
#include "settings/subcommands.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tool {

namespace {

namespace fs = std::filesystem;

struct Options {
    int32_t id = kDefaultProcessId;
    std::string folder;
    bool yes = false;
    bool force = false;
};

struct Item {
    FileRef file;
    Contents contents;
};

// What a folder holds, and what is wrong with it.
class Source {
public:
    explicit Source(const fs::path& folder) : m_folder(folder)
    {
        for (const vx63::settings::File& entry : vx63::settings::kFiles)
            if (m_visited.insert(folderOf(entry.fileId)).second)
                readFolder(folderOf(entry.fileId));
        for (const vx63::settings::SetPair& pair : vx63::settings::kSetPairs)
            checkSets(static_cast<uint32_t>(pair.set));
    }

    const std::vector<Item>& items() const { return m_items; }
    const std::vector<std::string>& faults() const { return m_faults; }
    const Item* item(uint32_t fileId) const
    {
        const auto found =
            std::ranges::find_if(m_items, [=](const Item& i) { return i.file.fileId == fileId; });
        return found == m_items.end() ? nullptr : &*found;
    }
    std::vector<std::string> setsOf(uint32_t setFileId) const
    {
        std::vector<std::string> names;
        for (const Item& item : m_items)
            if (item.file.fileId == setFileId)
                names.push_back(item.file.set);
        return names;
    }

private:
    void readFolder(const std::string& name);
    void checkSets(uint32_t setFileId);

    fs::path m_folder;
    std::set<std::string> m_visited;
    std::vector<Item> m_items;
    std::vector<std::string> m_faults;
};

// The file that lies at FOLDER/NAME.csv on the meter.
std::optional<FileRef> fileAt(const std::string& folder, const std::string& fileName)
{
    const std::string path = "/usr/local/bin/" + folder + "/" + fileName;
    for (const vx63::settings::File& entry : vx63::settings::kFiles)
        if (path == entry.path)
            return FileRef{entry.fileId, ""};
    for (const vx63::settings::File& entry : vx63::settings::kFiles)
        if (kindOf(entry.fileId) == FileKind::set && folderOf(entry.fileId) == folder &&
            fileName.ends_with(".csv"))
            return FileRef{entry.fileId, fileName.substr(0, fileName.size() - 4)};
    return std::nullopt;
}

void Source::readFolder(const std::string& name)
{
    std::vector<fs::path> paths;
    std::error_code error;
    for (fs::directory_iterator entry(m_folder / name, error), end; !error && entry != end;
         entry.increment(error))
        paths.push_back(entry->path());
    if (error && fs::exists(m_folder / name))
        m_faults.push_back((m_folder / name).string() + ": " + error.message());
    std::ranges::sort(paths);
    for (const fs::path& path : paths) {
        const std::string fileName = path.filename();
        if (fileName.starts_with('.') && !fileName.ends_with(".csv"))
            continue; // what a killed writer left
        const auto file = fileAt(name, fileName);
        if (!file) {
            m_faults.push_back(path.string() + ": no settings file is called so");
            continue;
        }
        const auto why = kindOf(file->fileId) == FileKind::set ? setNameFault(file->set) : std::nullopt;
        if (why) {
            m_faults.push_back(path.string() + ": no set can be called so: " + *why);
            continue;
        }
        ReadResult read = readFileAt(path, file->fileId);
        if (read.fault)
            m_faults.push_back(path.string() + ": " + faultText(*read.fault));
        m_items.push_back({*file, std::move(read.contents)});
    }
}

void Source::checkSets(uint32_t setFileId)
{
    const std::vector<std::string> names = setsOf(setFileId);
    const Item* list = item(listOf(setFileId));
    const std::string folder = (m_folder / folderOf(setFileId)).string();
    if (list == nullptr) {
        if (!names.empty())
            m_faults.push_back(folder + ": the sets have no list");
        return;
    }
    for (const std::string& fault : listFaults(listedSets(list->file.fileId, list->contents), names))
        m_faults.push_back(folder + ": in the list, " + fault);
}

std::vector<std::string> meaninglessValues(const Source& source)
{
    std::vector<std::string> values;
    for (const Item& item : source.items())
        for (const std::string& value : meaninglessValues(item.file.fileId, item.contents))
            values.push_back(nameOf(item.file) + " " + value);
    return values;
}

// The sets of a folder that has a list become those of the source; lists are written once their sets are
// there, and what they do not name is removed last.
void write(const Source& source)
{
    for (const FileKind kind : {FileKind::ordinary, FileKind::set, FileKind::list})
        for (const Item& item : source.items())
            if (kindOf(item.file.fileId) == kind)
                writeFile(item.file, item.contents);
    for (const vx63::settings::SetPair& pair : vx63::settings::kSetPairs) {
        const auto setFileId = static_cast<uint32_t>(pair.set);
        if (source.item(listOf(setFileId)) == nullptr)
            continue;
        const std::vector<std::string> kept = source.setsOf(setFileId);
        for (const std::string& name : setFilesOf(setFileId))
            if (std::ranges::find(kept, name) == kept.end() && !deleteSetFile({setFileId, name}))
                throw Failure(kExitOutput, "cannot delete " + nameOf({setFileId, name}),
                              "the file cannot be removed", "look at 'vx63 log --errors'");
    }
    for (const vx63::settings::File& entry : vx63::settings::kFiles)
        if (source.item(entry.fileId) != nullptr)
            noticeFile(entry.fileId);
}

int importSettings(const Options& options)
{
    const std::string what = "cannot import " + options.folder;
    if (!fs::is_directory(options.folder))
        throw Failure(kExitNoInput, what, "it is no folder", "give one that 'vx63 settings export' made");
    const Source source(options.folder);
    for (const std::string& fault : source.faults())
        complain(fault);
    if (!source.faults().empty())
        throw Failure(kExitData, what, "some files are wrong", "correct them; nothing was written");
    if (source.items().empty())
        throw Failure(kExitNoInput, what, "no settings files are in it",
                      "give the folder above sys_set, ch_set and the others");
    if (!options.force)
        requireMeaning(kExitData, what, meaninglessValues(source), "correct them, or give --force");
    for (const Item& item : source.items())
        if (const fs::path place = fs::path(pathOf(item.file)).parent_path(); !fs::is_directory(place))
            throw Failure(kExitOutput, what, place.string() + " is not there",
                          "plug in the USB memory, or leave out the folder");
    confirm(options.yes, format("Replace the settings by the %zu files of ", source.items().size()) +
                             options.folder + "?");
    const Identity identity(options.id);
    write(source);
    print(format("%zu files imported\n", source.items().size()));
    return kExitSuccess;
}

} // namespace

void addSettingsImport(CommandLine& settings)
{
    settings.addCommand(
        "import", "Take over the files of a folder, all or none", "vx63 settings import backup --yes",
        importSettings, [](CommandLine& line, Options& options) {
            line.text("DIR", options.folder, "DIR", "The folder, one that 'export' made").required();
            addForce(line, options.force);
        });
}

} // namespace tool

#include "settings/set_list.h"

#include "common/failure.h"
#include "common/overhear.h"
#include "common/text.h"
#include "libvx63.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace tool {

namespace {

SetListEntry entryAt(const Contents& list, uint32_t record)
{
    SetListEntry entry;
    std::memcpy(&entry, list.bytes.data() + record * sizeof entry, sizeof entry);
    return entry;
}

// An empty name makes a free entry.
void putEntry(Contents& list, uint32_t record, const std::string& name)
{
    SetListEntry entry{};
    entry.NO = static_cast<uint8_t>(record + 1);
    entry.ENBFLG = name.empty() ? 0 : 1;
    std::memcpy(entry.FILE_NAME, name.data(), std::min(name.size(), sizeof entry.FILE_NAME - 1));
    std::memcpy(list.bytes.data() + record * sizeof entry, &entry, sizeof entry);
}

Failure cannotDelete(const FileRef& set)
{
    return {kExitOutput, "cannot delete " + nameOf(set), "the file cannot be removed",
            "look at 'ls -l " + pathOf(set) + "'"};
}

// Throws Failure where that cannot be told: a list that is taken for missing is made anew.
bool fileExists(const FileRef& file)
{
    if (access(pathOf(file).c_str(), F_OK) == 0)
        return true;
    if (errno == ENOENT || errno == ENOTDIR)
        return false;
    throw Failure(kExitNoInput, "cannot look at " + nameOf(file), std::strerror(errno),
                  "look at 'ls -l " + pathOf(file) + "'");
}

// A list of the sets that have a file: those that it names stay where they are, the others come to free
// records. A set whose name is none, or that finds no room, is left out.
Contents inStep(uint32_t listFileId, const std::vector<ListEntry>& listed, std::vector<std::string> files)
{
    std::erase_if(files, [](const std::string& name) { return setNameFault(name).has_value(); });
    std::vector<std::string> names(vx63::settings::kFiles[listFileId].rows);
    const auto take = [&](const ListEntry& entry) {
        if (std::erase(files, entry.name) != 0)
            names[entry.record] = entry.name;
    };
    std::ranges::for_each(listed, take);
    for (auto free = std::ranges::find(names, ""); free != names.end() && !files.empty();
         free = std::ranges::find(names, ""))
        take({static_cast<uint32_t>(free - names.begin()), files.front()});
    return listNaming(listFileId, names);
}

} // namespace

uint32_t listOf(uint32_t setFileId)
{
    return static_cast<uint32_t>(std::ranges::find(vx63::settings::kSetPairs, static_cast<int32_t>(setFileId),
                                                   &vx63::settings::SetPair::set)
                                     ->list);
}

uint32_t setOf(uint32_t listFileId)
{
    return static_cast<uint32_t>(std::ranges::find(vx63::settings::kSetPairs,
                                                   static_cast<int32_t>(listFileId),
                                                   &vx63::settings::SetPair::list)
                                     ->set);
}

Contents listNaming(uint32_t listFileId, const std::vector<std::string>& names)
{
    const vx63::settings::File& file = vx63::settings::kFiles[listFileId];
    Contents list{std::vector<uint8_t>(size_t{file.rows} * file.dataSize), file.rows};
    for (uint32_t i = 0; i < file.rows; ++i)
        putEntry(list, i, i < names.size() ? names[i] : "");
    return list;
}

std::vector<ListEntry> listedSets(uint32_t listFileId, const Contents& list)
{
    std::vector<ListEntry> listed;
    for (uint32_t i = 0; i < std::min(list.records, vx63::settings::kFiles[listFileId].rows); ++i) {
        const SetListEntry entry = entryAt(list, i);
        if (entry.ENBFLG == 1)
            listed.push_back({i, {entry.FILE_NAME, strnlen(entry.FILE_NAME, sizeof entry.FILE_NAME)}});
    }
    return listed;
}

std::vector<std::string> listFaults(const std::vector<ListEntry>& listed,
                                    const std::vector<std::string>& files)
{
    std::vector<std::string> faults;
    for (auto entry = listed.begin(); entry != listed.end(); ++entry) {
        const std::string start = format("record %u names '", entry->record) + entry->name + "'";
        if (const auto why = setNameFault(entry->name))
            faults.push_back(start + ", which is no name of a set: " + *why);
        else if (std::ranges::find(files, entry->name) == files.end())
            faults.push_back(start + ", which has no file");
        if (std::find_if(listed.begin(), entry, [&](const ListEntry& e) { return e.name == entry->name; }) !=
            entry)
            faults.push_back(start + " again");
    }
    for (const std::string& name : files) // what is no name is told of the file, and no list can name it
        if (!setNameFault(name) && std::ranges::find(listed, name, &ListEntry::name) == listed.end())
            faults.push_back("it does not name '" + name + "', which has a file");
    return faults;
}

bool repairList(uint32_t setFileId)
{
    const uint32_t list = listOf(setFileId);
    const std::vector<std::string> files = setFilesOf(setFileId);
    const ReadResult read = readFile({list, ""});
    const bool broken = read.fault && !read.fault->missing;
    const std::vector<ListEntry> listed =
        read.fault ? std::vector<ListEntry>() : listedSets(list, read.contents);
    if (!broken && listFaults(listed, files).empty())
        return false;
    const Contents repaired = inStep(list, listed, files);
    if (!read.fault && repaired.bytes == read.contents.bytes && repaired.records == read.contents.records)
        return false;
    writeFile({list, ""}, repaired);
    noticeFile(list);
    return true;
}

static bool askToDelete(const FileRef& set)
{
    if (setNameFault(set.set)) // which the library would write into its log as it is
        return std::remove(pathOf(set).c_str()) == 0;
    const char* name = set.set.c_str();
    switch (set.fileId) {
    case VX63_SET_FILE_USER_SET:
        return vx63_deleteSetFileUser(name) == VX63_OK;
    case VX63_SET_FILE_USER_SET_USB1:
        return vx63_deleteSetFileUserUsb1(name) == VX63_OK;
    case VX63_SET_FILE_USER_SET_USB2:
        return vx63_deleteSetFileUserUsb2(name) == VX63_OK;
    case VX63_SET_FILE_LOGGER_SET:
        return vx63_deleteSetFileLogger(name) == VX63_OK;
    case VX63_SET_FILE_LOGGER_SET_USB1:
        return vx63_deleteSetFileLoggerUsb1(name) == VX63_OK;
    case VX63_SET_FILE_LOGGER_SET_USB2:
        return vx63_deleteSetFileLoggerUsb2(name) == VX63_OK;
    default:
        return false;
    }
}

bool deleteSetFile(const FileRef& set)
{
    return askToDelete(set) || (access(pathOf(set).c_str(), F_OK) != 0 && errno == ENOENT);
}

SetFolder::SetFolder(uint32_t setFileId)
    : m_set(setFileId), m_list(listOf(setFileId)), m_listMissing(!fileExists({m_list, ""})),
      m_contents(m_listMissing ? listNaming(m_list, {}) : readOrFactory({m_list, ""})),
      m_listed(listedSets(m_list, m_contents))
{}

std::vector<std::string> SetFolder::files() const
{
    return setFilesOf(m_set);
}

std::optional<uint32_t> SetFolder::recordOf(const std::string& name) const
{
    const auto entry = std::ranges::find(m_listed, name, &ListEntry::name);
    if (entry == m_listed.end())
        return std::nullopt;
    return entry->record;
}

// An empty name frees the entry.
void SetFolder::writeEntry(uint32_t record, const std::string& name)
{
    putEntry(m_contents, record, name);
    if (m_listMissing || record >= m_contents.records) {
        m_contents.records = std::max(m_contents.records, record + 1);
        writeFile({m_list, ""}, m_contents);
        m_listMissing = false;
    } else {
        writeRecord({m_list, ""}, m_contents, record);
    }
    m_listed = listedSets(m_list, m_contents);
}

void SetFolder::add(const std::string& name, const Contents& channels)
{
    const FileRef set{m_set, name};
    const std::string what = "cannot create " + nameOf(set);
    if (recordOf(name) || fileExists(set))
        throw Failure(kExitCreate, what, "there is such a set already",
                      "choose another name, or use 'vx63 sets delete' first");
    const uint32_t rows = vx63::settings::kFiles[m_list].rows;
    uint32_t record = 0;
    while (record < m_contents.records &&
           std::ranges::find(m_listed, record, &ListEntry::record) != m_listed.end())
        ++record;
    if (record == rows)
        throw Failure(kExitCreate, what, format("the list is full: %u sets", rows),
                      "use 'vx63 sets delete' first, or another storage");

    writeFile(set, channels);
    try {
        writeEntry(record, name);
    } catch (const Failure&) {
        deleteSetFile(set);
        throw;
    }
    noticeFile(m_set);
    noticeRecord(m_list, record);
}

void SetFolder::removeFile(const std::string& name)
{
    const FileRef set{m_set, name};
    if (!deleteSetFile(set))
        throw cannotDelete(set);
}

void SetFolder::remove(const std::string& name)
{
    const FileRef set{m_set, name};
    const auto record = recordOf(name);
    const bool hasFile = fileExists(set);
    if (!record && !hasFile)
        throw Failure(kExitNoInput, "cannot delete " + nameOf(set), "there is no such set",
                      "see 'vx63 sets list'");
    if (record)
        writeEntry(*record, "");
    if (hasFile) {
        try {
            removeFile(name);
        } catch (const Failure&) {
            if (record)
                writeEntry(*record, name);
            throw;
        }
    }
    noticeFile(m_set);
    if (record)
        noticeRecord(m_list, *record);
}

void clearHiddenSets(uint32_t setFileId)
{
    for (const std::string& name : setFilesOf(setFileId))
        if ((name.empty() || name.starts_with('.')) && !deleteSetFile({setFileId, name}))
            throw cannotDelete({setFileId, name});
}

void clearSets(uint32_t setFileId)
{
    const uint32_t list = listOf(setFileId);
    if (!fileExists({list, ""})) // a folder that is empty cannot be emptied
        writeFile({list, ""}, listNaming(list, {}));
    const bool user = vx63_isFileIdUserSet(static_cast<int32_t>(setFileId)) == 1;
    std::string said;
    const int32_t result = overhear(
        [&] {
            return user ? vx63_deleteSetFileUserBulk(setFileId) : vx63_deleteSetFileLoggerBulk(setFileId);
        },
        said);
    if (result != VX63_OK)
        throw Failure(kExitOutput, "cannot delete the sets of " + folderOf(setFileId),
                      said.empty() ? "a file cannot be removed or written" : said.substr(0, said.find('\n')),
                      "look at 'ls -la " + folderPathOf(setFileId) + "'");
    clearHiddenSets(setFileId);
    noticeFile(setFileId);
    noticeFile(list);
}

} // namespace tool

// The list of the setting sets in a folder, kept in step with their files.
#pragma once

#include "settings/file.h"

#include <optional>
#include <string>
#include <vector>

namespace tool {

// The list of a set's folder, and the other way round.
uint32_t listOf(uint32_t setFileId);
uint32_t setOf(uint32_t listFileId);

// A list of these sets, no more than it can hold.
Contents listNaming(uint32_t listFileId, const std::vector<std::string>& names);

struct ListEntry {
    uint32_t record;
    std::string name;
};

// The sets that a list names, in its order.
std::vector<ListEntry> listedSets(uint32_t listFileId, const Contents& list);

// What is wrong between a list and the names of the set files in its folder, one sentence each.
std::vector<std::string> listFaults(const std::vector<ListEntry>& listed,
                                    const std::vector<std::string>& files);

// Brings the list of a folder in step with the sets that have a file, and tells the system service; gives
// whether there was anything to do. Throws Failure.
bool repairList(uint32_t setFileId);

// A folder of setting sets. Every change tells the system service. Throws Failure.
class SetFolder {
public:
    // Reads the list; one that is missing names no sets.
    explicit SetFolder(uint32_t setFileId);

    const std::vector<ListEntry>& listed() const { return m_listed; }
    std::vector<std::string> files() const;

    // A set that is not there yet: file first, so that the list never names a set without one.
    void add(const std::string& name, const Contents& channels);

    // Off the list first, for the same reason.
    void remove(const std::string& name);

private:
    std::optional<uint32_t> recordOf(const std::string& name) const;
    void writeEntry(uint32_t record, const std::string& name);
    void removeFile(const std::string& name);

    uint32_t m_set;
    uint32_t m_list;
    bool m_listMissing;
    Contents m_contents;
    std::vector<ListEntry> m_listed;
};

// Deletes the hidden sets of a folder, which the library's deletion of all sets leaves. Throws Failure.
void clearHiddenSets(uint32_t setFileId);

// Deletes every set of a folder, hidden ones too, and empties its list, whatever state that is in. Throws
// Failure.
void clearSets(uint32_t setFileId);

// Deletes the file of a set; false when it cannot be deleted. Another may do so meanwhile: it is gone.
bool deleteSetFile(const FileRef& set);

} // namespace tool

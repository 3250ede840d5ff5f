// How the settings files are called on the command line.
//
// A file is called FOLDER/WORD: its path without /usr/local/bin/, without what stands before and in
// "_setting_file_", without the channel spacing at the end and without ".csv":
// /usr/local/bin/ch_set/channel_setting_file_uhf_6mhz.csv is ch_set/uhf. A setting set is FOLDER/NAME.
#pragma once

#include "libvx63_settings.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

enum class FileKind { ordinary, set, list };
FileKind kindOf(uint32_t fileId);

// A settings file: of the setting sets one.
struct FileRef {
    uint32_t fileId;
    std::string set; // name of the set; empty for other files
};

// Stands for the name of any set of a folder.
inline constexpr const char* kAnySet = "NAME";

// What the catalogue tells of it.
const vx63::settings::File& entryOf(const FileRef& file);

// "ch_set", the folder in /usr/local/bin, and its path.
std::string folderOf(uint32_t fileId);
std::string folderPathOf(uint32_t fileId);

// "ch_set/fm"; of a set "user_set/TOKYO".
std::string nameOf(const FileRef& file);

// Where it lies.
std::string pathOf(const FileRef& file);

// The file that is meant by a name, an id, a path or a file name in its folder; letters in any case. Throws
// WrongUsage that tells the candidates.
FileRef fileNamed(const std::string& option, const std::string& text);

// Every name that fileNamed takes, of setting sets those that have a file; by file id.
std::vector<std::string> fileNames();

// Why a setting set cannot be called so; nothing where it can.
std::optional<std::string> setNameFault(std::string_view name);

// The names of the set files in a folder, listed or not, sorted. The meter's own folder, or another. Names
// that no set can have are among them: hidden ones, too, and the empty one. Throw Failure.
std::vector<std::string> setFilesOf(uint32_t fileId);
std::vector<std::string> setFilesIn(const std::string& folder, uint32_t fileId);

// Those of the meter's own that can be given on the command line.
std::vector<std::string> namedSetsOf(uint32_t fileId);

} // namespace tool

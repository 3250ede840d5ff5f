#include "settings/name.h"

#include "common/failure.h"
#include "common/numbers.h"
#include "common/text.h"
#include "libvx63.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace tool {

namespace {

constexpr std::string_view kRoot = "/usr/local/bin/";
constexpr std::string_view kPrefixEnd = "_setting_file_";
constexpr std::string_view kSuffix = ".csv";
constexpr size_t kSetNameMax = 12;

std::string lower(std::string_view text)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

// "channel_setting_file_bs_34.5mhz.csv" as "bs"
std::string wordOf(std::string_view fileName)
{
    if (const size_t prefix = fileName.find(kPrefixEnd); prefix != std::string_view::npos)
        fileName.remove_prefix(prefix + kPrefixEnd.size());
    fileName.remove_suffix(kSuffix.size());
    if (fileName.ends_with("mhz"))
        fileName = fileName.substr(0, fileName.rfind('_'));
    return std::string(fileName);
}

std::string fileNameOf(uint32_t fileId)
{
    const std::string_view path = vx63::settings::kFiles[fileId].path;
    return std::string(path.substr(path.rfind('/') + 1));
}

std::string joined(const std::vector<std::string>& words)
{
    std::string result;
    for (const std::string& word : words)
        result += (result.empty() ? "" : ", ") + word;
    return result;
}

// The files whose name holds the text, or what stands before or behind its slash.
std::vector<std::string> candidates(const std::string& text)
{
    const size_t slash = text.rfind('/');
    const std::string word = slash == std::string::npos ? text : text.substr(slash + 1);
    const std::string folder = slash == std::string::npos ? "" : text.substr(0, slash + 1);
    std::vector<std::string> byWord, byFolder;
    for (const vx63::settings::File& file : vx63::settings::kFiles) {
        const std::string name = nameOf({file.fileId, kAnySet});
        if (!word.empty() && name.find(word) != std::string::npos)
            byWord.push_back(name);
        if (!folder.empty() && name.starts_with(folder))
            byFolder.push_back(name);
    }
    return byWord.empty() ? byFolder : byWord;
}

} // namespace

FileKind kindOf(uint32_t fileId)
{
    for (const vx63::settings::SetPair& pair : vx63::settings::kSetPairs) {
        if (static_cast<uint32_t>(pair.set) == fileId)
            return FileKind::set;
        if (static_cast<uint32_t>(pair.list) == fileId)
            return FileKind::list;
    }
    return FileKind::ordinary;
}

const vx63::settings::File& entryOf(const FileRef& file)
{
    return vx63::settings::kFiles[file.fileId];
}

std::string folderOf(uint32_t fileId)
{
    const std::string_view path = vx63::settings::kFiles[fileId].path;
    return std::string(path.substr(kRoot.size(), path.rfind('/') - kRoot.size()));
}

std::string folderPathOf(uint32_t fileId)
{
    return std::string(kRoot) + folderOf(fileId);
}

std::string nameOf(const FileRef& file)
{
    const std::string folder = folderOf(file.fileId) + "/";
    if (kindOf(file.fileId) == FileKind::set)
        return folder + file.set;
    return folder + wordOf(fileNameOf(file.fileId));
}

std::string pathOf(const FileRef& file)
{
    std::string path = entryOf(file).path;
    if (kindOf(file.fileId) == FileKind::set)
        path.replace(path.find("%s"), 2, file.set);
    return path;
}

FileRef fileNamed(const std::string& option, const std::string& text)
{
    if (const auto id = parseNumber(text); id && *id < VX63_SET_FILE_COUNT) {
        const FileRef file{static_cast<uint32_t>(*id), ""};
        if (kindOf(file.fileId) == FileKind::set)
            throw WrongUsage(option, format("%s is a folder of setting sets; give %s", text.c_str(),
                                            nameOf({file.fileId, kAnySet}).c_str()));
        return file;
    }

    std::string wanted = lower(text.starts_with(kRoot) ? text.substr(kRoot.size()) : text);
    std::vector<uint32_t> byWord;
    for (const vx63::settings::File& file : vx63::settings::kFiles) {
        if (kindOf(file.fileId) == FileKind::set)
            continue;
        const std::string fileName = fileNameOf(file.fileId);
        if (wanted == nameOf({file.fileId, ""}) || wanted == folderOf(file.fileId) + "/" + fileName)
            return {file.fileId, ""};
        if (wanted == wordOf(fileName) || wanted == fileName)
            byWord.push_back(file.fileId);
    }
    if (byWord.size() == 1)
        return {byWord.front(), ""};
    if (byWord.size() > 1) {
        std::vector<std::string> names;
        for (const uint32_t fileId : byWord)
            names.push_back(nameOf({fileId, ""}));
        throw WrongUsage(option, format("'%s' can mean %s", text.c_str(), joined(names).c_str()));
    }

    // Only the folder of a set may be written in any case: its name is its own.
    const std::string path = text.starts_with(kRoot) ? text.substr(kRoot.size()) : text;
    const size_t slash = path.find('/');
    for (const vx63::settings::SetPair& pair : vx63::settings::kSetPairs) {
        const auto fileId = static_cast<uint32_t>(pair.set);
        if (slash == std::string::npos || lower(path.substr(0, slash)) != folderOf(fileId))
            continue;
        std::string name = path.substr(slash + 1);
        if (name.ends_with(kSuffix))
            name.resize(name.size() - kSuffix.size());
        if (const auto fault = setNameFault(name))
            throw WrongUsage(option, format("'%s' is no name of a set: %s", name.c_str(), fault->c_str()));
        return {fileId, name};
    }

    const std::vector<std::string> near = candidates(wanted);
    throw WrongUsage(
        option, format("'%s' is no settings file", text.c_str()) +
                    (near.empty() ? ", which 'vx63 settings list' tells" : "; there are " + joined(near)));
}

std::vector<std::string> fileNames()
{
    std::vector<std::string> names;
    for (const vx63::settings::File& file : vx63::settings::kFiles) {
        if (kindOf(file.fileId) != FileKind::set)
            names.push_back(nameOf({file.fileId, ""}));
        else
            for (const std::string& set : namedSetsOf(file.fileId))
                names.push_back(nameOf({file.fileId, set}));
    }
    return names;
}

std::optional<std::string> setNameFault(std::string_view name)
{
    if (name.empty())
        return "it is empty";
    if (name.size() > kSetNameMax)
        return format("it has %zu bytes, more than %zu", name.size(), kSetNameMax);
    if (name.find_first_of("/\\") != std::string_view::npos)
        return "it holds a separator";
    if (name.front() == '.')
        return "it begins with a point"; // such a file is hidden, from the deletion of all sets too
    if (printable(name) != name || name.find('\t') != std::string_view::npos)
        return "it is not printable";
    return std::nullopt;
}

std::vector<std::string> setFilesOf(uint32_t fileId)
{
    return setFilesIn(folderPathOf(fileId), fileId);
}

std::vector<std::string> namedSetsOf(uint32_t fileId)
{
    try {
        std::vector<std::string> names = setFilesOf(fileId);
        std::erase_if(names, setNameFault);
        return names;
    } catch (const Failure&) { // whoever offers names has something else to say
        return {};
    }
}

std::vector<std::string> setFilesIn(const std::string& folder, uint32_t fileId)
{
    std::string list;
    for (const vx63::settings::SetPair& pair : vx63::settings::kSetPairs)
        if (static_cast<uint32_t>(pair.set) == fileId)
            list = fileNameOf(static_cast<uint32_t>(pair.list));
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename();
        if (name != list && name.ends_with(kSuffix))
            names.push_back(name.substr(0, name.size() - kSuffix.size()));
    }
    // One that is not there has no sets: a USB memory is out.
    if (error && error != std::errc::no_such_file_or_directory && error != std::errc::not_a_directory)
        throw Failure(kExitNoInput, "cannot read " + folder, error.message(),
                      "look at 'ls -la " + folder + "'");
    std::ranges::sort(names);
    return names;
}

} // namespace tool

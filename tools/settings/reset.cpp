// vx63 settings reset: back to the factory contents.
#include "common/confirm.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/output.h"
#include "common/overhear.h"
#include "libvx63.h"
#include "settings/arguments.h"
#include "settings/file.h"
#include "settings/set_list.h"
#include "settings/subcommands.h"

#include <filesystem>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    std::optional<FileRef> file;
    bool all = false;
    bool onlyDelete = false;
    bool yes = false;
};

// A file that is still there; empty folders make the deletion fail although nothing is left in them.
std::optional<std::string> leftover()
{
    for (uint32_t fileId = 0; fileId < VX63_SET_FILE_COUNT; ++fileId) {
        std::error_code error;
        const auto folder = std::filesystem::path(vx63::settings::kFiles[fileId].path).parent_path();
        for (const auto& entry : std::filesystem::directory_iterator(folder, error))
            if (!entry.path().filename().string().starts_with('.'))
                return entry.path().string();
        if (error && error != std::errc::no_such_file_or_directory)
            return folder.string();
    }
    return std::nullopt;
}

// What there is without any sets. A USB memory that is out has no list.
std::vector<uint32_t> filesToWrite()
{
    std::vector<uint32_t> fileIds;
    for (uint32_t fileId = 0; fileId < VX63_SET_FILE_COUNT; ++fileId) {
        const FileKind kind = kindOf(fileId);
        const auto folder = std::filesystem::path(vx63::settings::kFiles[fileId].path).parent_path();
        if (kind == FileKind::ordinary || (kind == FileKind::list && std::filesystem::exists(folder)))
            fileIds.push_back(fileId);
    }
    return fileIds;
}

int resetAll(const Options& options)
{
    confirm(options.yes, "Delete every settings file, setting sets on all storages too?");
    const Identity identity(options.id);
    std::string said; // of every folder that is empty already
    if (overhear([] { return vx63_deleteAllSetFile(); }, said) != VX63_OK)
        if (const auto left = leftover())
            throw Failure(kExitOutput, "cannot delete every settings file", *left + " is still there",
                          "look at 'ls -la' of its folder");
    for (const vx63::settings::SetPair& pair : vx63::settings::kSetPairs)
        clearHiddenSets(static_cast<uint32_t>(pair.set));
    if (options.onlyDelete) {
        sync(); // so that no file comes back; the library does it where files are written
        return kExitSuccess;
    }
    // Whatever becomes of the notices, every file is there.
    const std::vector<uint32_t> fileIds = filesToWrite();
    for (const uint32_t fileId : fileIds)
        writeFile({fileId, ""},
                  kindOf(fileId) == FileKind::list ? listNaming(fileId, {}) : factoryContents(fileId));
    for (const uint32_t fileId : fileIds)
        noticeFile(fileId);
    return kExitSuccess;
}

// A list that names the sets that have a file.
Contents listAnew(uint32_t listFileId)
{
    const uint32_t setFileId = setOf(listFileId);
    std::vector<std::string> names;
    for (const std::string& name : setFilesOf(setFileId)) {
        if (setNameFault(name) || names.size() == vx63::settings::kFiles[listFileId].rows)
            complain("cannot list '" + name +
                     "': the name or the number of the sets is wrong: "
                     "see 'vx63 settings check'");
        else
            names.push_back(name);
    }
    return listNaming(listFileId, names);
}

int resetOne(const Options& options, const FileRef& file)
{
    const FileKind kind = kindOf(file.fileId);
    if (kind == FileKind::set)
        throw Failure(kExitUsage, "cannot reset " + nameOf(file), "sets have no factory contents",
                      "use 'vx63 sets delete'");
    confirm(options.yes, kind == FileKind::list
                             ? "Make " + nameOf(file) + " anew of the sets that have a file?"
                             : "Replace " + nameOf(file) + " by its factory contents?");
    const Identity identity(options.id);
    writeFile(file, kind == FileKind::list ? listAnew(file.fileId) : factoryContents(file.fileId));
    noticeFile(file.fileId);
    return kExitSuccess;
}

int reset(const Options& options)
{
    return options.file ? resetOne(options, *options.file) : resetAll(options);
}

} // namespace

void addSettingsReset(CommandLine& settings)
{
    settings.addCommand(
        "reset", "Back to the factory contents", "vx63 settings reset sys_set/volume --yes", reset,
        [](CommandLine& line, Options& options) {
            const Option file = addFileArgument(line, options.file);
            const Option all =
                line.flag("--all", options.all, "Every file; all setting sets are deleted").excludes(file);
            line.flag("--delete", options.onlyDelete, "Delete the files and write none anew").needs(all);
            line.check([&options] {
                if (!options.all && !options.file)
                    throw WrongUsage("FILE or --all is required");
            });
        });
}

} // namespace tool

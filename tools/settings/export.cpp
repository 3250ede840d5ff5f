// vx63 settings export: copy the settings files into a folder.
#include "common/failure.h"
#include "common/file.h"
#include "common/output.h"
#include "common/text.h"
#include "settings/file.h"
#include "settings/subcommands.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tool {

namespace {

namespace fs = std::filesystem;

struct Options {
    std::string folder;
};

int exportSettings(const Options& options)
{
    const fs::path target = options.folder;
    makeFolder(target);
    std::error_code error;
    const bool empty = fs::is_empty(target, error);
    if (error || !empty)
        throw Failure(kExitCreate, "cannot export to " + options.folder,
                      error ? error.message() : "the folder is not empty", "choose another one");

    std::vector<FileRef> files;
    for (const vx63::settings::File& entry : vx63::settings::kFiles) {
        if (kindOf(entry.fileId) != FileKind::set)
            files.push_back({entry.fileId, ""});
        else
            for (const std::string& name : setFilesOf(entry.fileId))
                files.push_back({entry.fileId, name});
    }
    unsigned written = 0;
    unsigned missing = 0;
    int code = kExitSuccess;
    for (const FileRef& file : files) {
        const ReadResult read = readFile(file);
        if (read.fault && read.fault->missing) {
            ++missing;
        } else if (read.fault) {
            complain("cannot export " + nameOf(file) + ": " + faultText(*read.fault) +
                     ": the other files are exported all the same");
            code = kExitData;
        } else {
            const fs::path place = target / folderOf(file.fileId);
            makeFolder(place);
            writeFileAt(place / fs::path(pathOf(file)).filename(), file.fileId, read.contents);
            ++written;
        }
    }
    print(format("%u files exported", written) + (missing > 0 ? format(", %u are missing", missing) : "") +
          "\n");
    return code;
}

} // namespace

void addSettingsExport(CommandLine& settings)
{
    settings.addCommand("export", "Copy every file into a new or empty folder", "vx63 settings export backup",
                        exportSettings, [](CommandLine& line, Options& options) {
                            line.text("DIR", options.folder, "DIR", "The folder").required();
                        });
}

} // namespace tool

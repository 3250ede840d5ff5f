// vx63 settings set: change one value of a file and tell the system service.
#include "common/failure.h"
#include "common/identity.h"
#include "settings/arguments.h"
#include "settings/file.h"
#include "settings/meaning.h"
#include "settings/record.h"
#include "settings/subcommands.h"

#include <string>
#include <vector>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    FileRef file{};
    uint32_t record = 0;
    std::string column;
    std::string value;
    bool force = false;
};

int set(const Options& options)
{
    const FileRef& file = options.file;
    if (kindOf(file.fileId) == FileKind::list)
        throw Failure(kExitUsage, "cannot change " + nameOf(file),
                      "a list must agree with the sets in its folder", "use 'vx63 sets'");
    const vx63::settings::Column* column = requireColumn(file, options.column);
    std::vector<uint8_t> scratch(entryOf(file).dataSize);
    const std::string what = "cannot set " + std::string(column->name);
    if (const auto why = storeCell(*column, scratch.data(), options.value))
        throw Failure(kExitUsage, what, *why, "give another value");
    if (const auto why = meaningFault(*column, scratch.data()); why && !options.force)
        throw Failure(kExitUsage, what, *why, "give another value, or --force");

    const Identity identity(options.id);
    const auto fault = readFile(file).fault;
    Contents contents = readOrFactory(file);
    requireRecord(file, contents, options.record);
    storeCell(*column, contents.bytes.data() + options.record * entryOf(file).dataSize, options.value);
    if (fault && fault->missing) { // the factory contents and this value make the file
        writeFile(file, contents);
        noticeFile(file.fileId);
    } else {
        writeRecord(file, contents, options.record);
        noticeRecord(file.fileId, options.record);
    }
    return kExitSuccess;
}

} // namespace

void addSettingsSet(CommandLine& settings)
{
    settings.addCommand("set", "Change one value of a file and tell the meter",
                        "vx63 settings set sys_set/volume 0 VOLUME 2", set,
                        [](CommandLine& line, Options& options) {
                            addFileArgument(line, options.file).required();
                            addRecordArgument(line, options.record);
                            addColumnArgument(line, options.column).required();
                            line.text("VALUE", options.value, "VALUE", "Number or text").required();
                            addForce(line, options.force);
                        });
}

} // namespace tool

// vx63 settings set: change one value of a file and tell the system service.
#include "common/failure.h"
#include "common/identity.h"
#include "common/options.h"
#include "settings/arguments.h"
#include "settings/file.h"
#include "settings/record.h"
#include "settings/subcommands.h"

#include <memory>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    FileRef file{};
    uint32_t record = 0;
    std::string column;
    std::string value;
};

int set(const Options& options)
{
    const FileRef& file = options.file;
    if (kindOf(file.fileId) == FileKind::list)
        throw Failure(kExitUsage, "cannot change " + nameOf(file),
                      "a list must agree with the sets in its folder", "use 'vx63 sets'");
    const vx63::settings::Column* column = requireColumn(file, options.column);
    std::vector<uint8_t> scratch(entryOf(file).dataSize);
    if (const auto why = storeCell(*column, scratch.data(), options.value))
        throw Failure(kExitUsage, "cannot set " + std::string(column->name), *why, "give another value");

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

void addSettingsSet(CLI::App& settings, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* app =
        settings.add_subcommand("set", "Change one value of a file and tell the meter")->group("Commands");
    addFileArgument(*app, options->file);
    addNumber(*app, "RECORD", options->record, "N", "Record, from 0", 0, UINT32_MAX)->required();
    app->add_option("COLUMN", options->column, "Name of the column")->type_name("NAME")->required();
    app->add_option("VALUE", options->value, "Number or text")->type_name("VALUE")->required();
    addIdOption(*app, options->id);
    app->footer("Example: vx63 settings set sys_set/volume 0 VOLUME 2");
    app->callback([options, &command] { command = [options] { return set(*options); }; });
}

} // namespace tool

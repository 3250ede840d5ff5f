// vx63 sets: the setting sets, which people name, on the meter's three storages.
#include "commands.h"
#include "common/confirm.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/json.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "libvx63.h"
#include "settings/arguments.h"
#include "settings/meaning.h"
#include "settings/record.h"
#include "settings/set_list.h"
#include "settings/show.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace tool {

namespace {

// What chooses the folder.
struct FolderOptions {
    bool usb1 = false;
    bool usb2 = false;
    bool logger = false;

    uint32_t set() const
    {
        if (logger)
            return usb1   ? VX63_SET_FILE_LOGGER_SET_USB1
                   : usb2 ? VX63_SET_FILE_LOGGER_SET_USB2
                          : VX63_SET_FILE_LOGGER_SET;
        return usb1   ? VX63_SET_FILE_USER_SET_USB1
               : usb2 ? VX63_SET_FILE_USER_SET_USB2
                      : VX63_SET_FILE_USER_SET;
    }
};

struct ListOptions : FolderOptions {
    Form form = Form::text;
};

struct ShowOptions : FolderOptions {
    std::string name;
    Form form = Form::text;
};

struct CreateOptions : FolderOptions {
    int32_t id = kDefaultProcessId;
    std::string name;
    FileRef plan{};
    uint8_t ucBand = 0;
    uint8_t ucSpec = 0;
    uint32_t ulModulation = 0;
    bool force = false;
};

struct CopyOptions : FolderOptions {
    int32_t id = kDefaultProcessId;
    std::string source;
    std::string name;
};

struct DeleteOptions : FolderOptions {
    int32_t id = kDefaultProcessId;
    std::string name;
    bool yes = false;
};

struct ClearOptions : FolderOptions {
    int32_t id = kDefaultProcessId;
    bool yes = false;
};

int list(const ListOptions& options)
{
    const SetFolder folder(options.set());
    Table rows = {{"RECORD", "NAME", "CHANNELS"}};
    List sets(options.form);
    const auto add = [&](std::optional<uint32_t> record, const std::string& name) {
        std::optional<uint32_t> channels;
        std::string text = "no file";
        const ReadResult read = readFile({options.set(), name});
        if (!read.fault)
            text = std::to_string(*(channels = read.contents.records));
        else if (!read.fault->missing)
            text = "broken: " + faultText(*read.fault);
        if (options.form != Form::text) {
            sets.add({
                {"record", record},
                {"name", printable(name)},
                {"channels", channels},
            });
        } else {
            rows.push_back({record ? std::to_string(*record) : "not listed", name, text});
        }
    };
    for (const ListEntry& entry : folder.listed())
        add(entry.record, entry.name);
    for (const std::string& name : folder.files())
        if (std::ranges::find(folder.listed(), name, &ListEntry::name) == folder.listed().end())
            add(std::nullopt, name);
    if (options.form == Form::text)
        print(table(rows));
    sets.end();
    return kExitSuccess;
}

int show(const ShowOptions& options)
{
    const FileRef set{options.set(), options.name};
    printRecords(set, readOrFactory(set), options.form);
    return kExitSuccess;
}

// The channels of a plan as those of a set.
Contents channelsOf(const CreateOptions& options)
{
    const FileRef& plan = options.plan;
    const vx63::settings::File& entry = entryOf(plan);
    const vx63::settings::File& set = vx63::settings::kFiles[options.set()];
    const vx63::settings::Column* channel = columnNamed(entry, "CH_NO");
    const vx63::settings::Column* frequency = columnNamed(entry, "CENT_FREQ");
    if (frequency == nullptr)
        frequency = columnNamed(entry, "QAM_CENT_FREQ");
    const std::string what = "cannot make a set of " + nameOf(plan);
    if (channel == nullptr || frequency == nullptr)
        throw Failure(kExitUsage, what, "it is no channel plan", "choose one of the files in ch_set");
    const Contents source = readOrFactory(plan);
    if (source.records > set.rows)
        throw Failure(kExitUsage, what,
                      format("it has %u channels, and a set at most %u", source.records, set.rows),
                      "choose another plan");
    Contents contents{std::vector<uint8_t>(size_t{set.rows} * set.dataSize), source.records};
    for (uint32_t i = 0; i < source.records; ++i) {
        const uint8_t* record = source.bytes.data() + size_t{i} * entry.dataSize;
        SetChannel target{};
        target.NO = static_cast<uint8_t>(i + 1);
        target.ENBFLG = 1;
        target.BAND = options.ucBand;
        target.SPEC = options.ucSpec;
        target.MOD = options.ulModulation;
        std::memcpy(target.CH, record + channel->offset, sizeof target.CH);
        std::memcpy(&target.CENTER_FREQ, record + frequency->offset, sizeof target.CENTER_FREQ);
        std::memcpy(contents.bytes.data() + i * sizeof target, &target, sizeof target);
    }
    return contents;
}

int create(const CreateOptions& options)
{
    const Contents channels = channelsOf(options);
    if (!options.force)
        requireMeaning(kExitUsage, "cannot create " + nameOf({options.set(), options.name}),
                       meaninglessValues(options.set(), channels), "give others, or --force");
    const Identity identity(options.id);
    SetFolder(options.set()).add(options.name, channels);
    return kExitSuccess;
}

// A set of the same folder by its name, of another one as FOLDER/NAME.
FileRef sourceOf(const CopyOptions& options)
{
    if (options.source.find('/') == std::string::npos)
        return {options.set(), options.source};
    return fileNamed("SOURCE", options.source);
}

int copy(const CopyOptions& options)
{
    const Identity identity(options.id);
    SetFolder(options.set()).add(options.name, readOrFactory(sourceOf(options)));
    return kExitSuccess;
}

int remove(const DeleteOptions& options)
{
    confirm(options.yes, "Delete " + nameOf({options.set(), options.name}) + "?");
    const Identity identity(options.id);
    SetFolder(options.set()).remove(options.name);
    return kExitSuccess;
}

int clear(const ClearOptions& options)
{
    confirm(options.yes, "Delete every set of " + folderOf(options.set()) + "?");
    const Identity identity(options.id);
    clearSets(options.set());
    return kExitSuccess;
}

void checkSetName(const std::string& argument, const std::string& name)
{
    if (const auto why = setNameFault(name))
        throw WrongUsage(argument, "'" + name + "' is no name of a set: " + *why);
}

Option addName(CommandLine& line, const std::string& argument, std::string& name)
{
    return line
        .value(argument, "NAME", "Name of the set, 1 to 12 characters",
               [&name, argument](const std::string& text) {
                   checkSetName(argument, text);
                   name = text;
               })
        .required();
}

// The sets of the folder that is given.
std::vector<std::string> setsOfGiven(const cli::Given& given)
{
    const auto has = [&](const char* flag) { return std::ranges::count(given.options, flag) > 0; };
    return namedSetsOf(FolderOptions{has("--usb1"), has("--usb2"), has("--logger")}.set());
}

// And all others as FOLDER/NAME.
std::vector<std::string> sourcesOfGiven(const cli::Given& given)
{
    std::vector<std::string> names = setsOfGiven(given);
    for (const vx63::settings::SetPair& pair : vx63::settings::kSetPairs)
        for (const std::string& set : namedSetsOf(static_cast<uint32_t>(pair.set)))
            names.push_back(nameOf({static_cast<uint32_t>(pair.set), set}));
    return names;
}

std::vector<std::string> plans(const cli::Given&)
{
    std::vector<std::string> names = fileNames();
    std::erase_if(names, [](const std::string& name) { return !name.starts_with("ch_set/"); });
    return names;
}

void addFolderOptions(CommandLine& line, FolderOptions& options)
{
    const Option usb1 = line.flag("--usb1", options.usb1, "On USB memory 1 [internal storage]");
    line.flag("--usb2", options.usb2, "On USB memory 2").excludes(usb1);
    line.flag("--logger", options.logger, "Logger sets instead of user sets");
}

void addListOptions(CommandLine& line, ListOptions& options)
{
    addFolderOptions(line, options);
}

void addShowOptions(CommandLine& line, ShowOptions& options)
{
    addFolderOptions(line, options);
    addName(line, "NAME", options.name).offers(setsOfGiven);
    line.csv(options.form, "Print the text of the file");
}

void addCreateOptions(CommandLine& line, CreateOptions& options)
{
    addFolderOptions(line, options);
    addName(line, "NAME", options.name);
    line.value("--from", "PLAN", "Channel plan, such as ch_set/uhf",
               [&options](const std::string& text) { options.plan = fileNamed("--from", text); })
        .required()
        .offers(plans);
    line.number("--band", options.ucBand, "N", "Band of every channel, see vx63-measure(1) [0: none]", 0,
                UINT8_MAX);
    line.number("--spec", options.ucSpec, "N",
                "Broadcast system of every channel, by its code [0: terrestrial]", 0, UINT8_MAX);
    line.number("--mod", options.ulModulation, "BITS", "Modulations of every channel, a bit each [0]", 0,
                UINT32_MAX);
    addForce(line, options.force);
}

void addCopyOptions(CommandLine& line, CopyOptions& options)
{
    addFolderOptions(line, options);
    line.value("SOURCE", "SOURCE", "Name of a set in the same folder, or FOLDER/NAME such as user_set/TOKYO",
               [&options](const std::string& text) {
                   if (text.find('/') == std::string::npos)
                       checkSetName("SOURCE", text);
                   else if (kindOf(fileNamed("SOURCE", text).fileId) != FileKind::set)
                       throw WrongUsage("SOURCE",
                                        "'" + text + "' is no set; 'vx63 sets create' makes one of a plan");
                   options.source = text;
               })
        .required()
        .offers(sourcesOfGiven);
    addName(line, "NEW", options.name);
}

void addDeleteOptions(CommandLine& line, DeleteOptions& options)
{
    addFolderOptions(line, options);
    addName(line, "NAME", options.name).offers(setsOfGiven);
}

void addClearOptions(CommandLine& line, ClearOptions& options)
{
    addFolderOptions(line, options);
}

} // namespace

void addSets(CommandLine& program)
{
    CommandLine sets = program.addGroup("sets", "List, create, copy and delete setting sets",
                                        "vx63 sets create TOKYO --from ch_set/uhf");
    sets.addCommand("list", "List the sets", "vx63 sets list --usb1", list, addListOptions);
    sets.addCommand("show", "Show the channels of a set", "vx63 sets show TOKYO", show, addShowOptions);
    sets.addCommand("create", "Make a set of a channel plan", "vx63 sets create TOKYO --from ch_set/uhf",
                    create, addCreateOptions);
    sets.addCommand("copy", "Copy a set", "vx63 sets copy user_set/TOKYO TOKYO --usb1", copy, addCopyOptions);
    sets.addCommand("delete", "Delete a set", "vx63 sets delete TOKYO --yes", remove, addDeleteOptions);
    sets.addCommand("clear", "Delete every set of a folder", "vx63 sets clear --usb2 --yes", clear,
                    addClearOptions);
}

} // namespace tool

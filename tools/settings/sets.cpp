// vx63 sets: the setting sets, which people name, on the meter's three storages.
#include "commands.h"
#include "common/confirm.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/options.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "libvx63.h"
#include "settings/arguments.h"
#include "settings/record.h"
#include "settings/set_list.h"
#include "settings/show.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    bool usb1 = false;
    bool usb2 = false;
    bool logger = false;
    std::string name;
    std::string source;
    FileRef plan{};
    uint8_t ucBand = 0;
    uint8_t ucSpec = 0;
    uint32_t ulModulation = 0;
    bool json = false;
    bool csv = false;
    bool yes = false;

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

int list(const Options& options)
{
    const SetFolder folder(options.set());
    std::vector<std::vector<std::string>> rows = {{"RECORD", "NAME", "CHANNELS"}};
    const auto add = [&](std::optional<uint32_t> record, const std::string& name) {
        std::optional<uint32_t> channels;
        std::string text = "no file";
        if (!setNameFault(name)) {
            const ReadResult read = readFile({options.set(), name});
            if (!read.fault)
                text = std::to_string(*(channels = read.contents.records));
            else if (!read.fault->missing)
                text = "broken: " + faultText(*read.fault);
        }
        if (options.json) {
            const nlohmann::ordered_json json = {
                {"record", record ? nlohmann::ordered_json(*record) : nlohmann::ordered_json()},
                {"name", printable(name)},
                {"channels", channels ? nlohmann::ordered_json(*channels) : nlohmann::ordered_json()},
            };
            print(json.dump() + "\n");
        } else {
            rows.push_back({record ? std::to_string(*record) : "not listed", name, text});
        }
    };
    for (const ListEntry& entry : folder.listed())
        add(entry.record, entry.name);
    for (const std::string& name : folder.files())
        if (std::ranges::find(folder.listed(), name, &ListEntry::name) == folder.listed().end())
            add(std::nullopt, name);
    if (!options.json)
        print(table(rows));
    return kExitSuccess;
}

int show(const Options& options)
{
    const FileRef set{options.set(), options.name};
    print(shownRecords(set, readOrFactory(set),
                       options.json  ? Form::json
                       : options.csv ? Form::csv
                                     : Form::text));
    return kExitSuccess;
}

// The channels of a plan as those of a set.
Contents channelsOf(const Options& options)
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
        const uint8_t* record = source.bytes.data() + i * entry.dataSize;
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

int create(const Options& options)
{
    const Identity identity(options.id);
    SetFolder(options.set()).add(options.name, channelsOf(options));
    return kExitSuccess;
}

// A set of the same folder by its name, of another one as FOLDER/NAME.
FileRef sourceOf(const Options& options)
{
    if (options.source.find('/') == std::string::npos)
        return {options.set(), options.source};
    return fileNamed("SOURCE", options.source);
}

int copy(const Options& options)
{
    const Identity identity(options.id);
    SetFolder(options.set()).add(options.name, readOrFactory(sourceOf(options)));
    return kExitSuccess;
}

int remove(const Options& options)
{
    confirm(options.yes, "Delete " + nameOf({options.set(), options.name}) + "?");
    const Identity identity(options.id);
    SetFolder(options.set()).remove(options.name);
    return kExitSuccess;
}

int clear(const Options& options)
{
    confirm(options.yes, "Delete every set of " + folderOf(options.set()) + "?");
    const Identity identity(options.id);
    clearSets(options.set());
    return kExitSuccess;
}

void checkSetName(const std::string& option, const std::string& name)
{
    if (const auto why = setNameFault(name))
        throw CLI::ValidationError(option, "'" + name + "' is no name of a set: " + *why);
}

void addName(CLI::App& app, const std::string& option, std::string& name)
{
    app.add_option_function<std::string>(
           option,
           [&name, option](const std::string& text) {
               checkSetName(option, text);
               name = text;
           },
           "Name of the set, 1 to 12 characters")
        ->type_name("NAME")
        ->required();
}

// A command with the options that choose the folder.
CLI::App* addCommand(CLI::App& sets, Command& command, const std::string& name,
                     const std::string& description, const std::shared_ptr<Options>& options,
                     int (*action)(const Options&))
{
    CLI::App* app = sets.add_subcommand(name, description)->group("Commands");
    CLI::Option* usb1 = app->add_flag("--usb1", options->usb1, "On USB memory 1 [internal storage]");
    app->add_flag("--usb2", options->usb2, "On USB memory 2")->excludes(usb1);
    app->add_flag("--logger", options->logger, "Logger sets instead of user sets");
    app->callback([options, action, &command] { command = [options, action] { return action(*options); }; });
    return app;
}

} // namespace

void addSets(CLI::App& app, Command& command)
{
    CLI::App* sets =
        app.add_subcommand("sets", "List, create, copy and delete setting sets")->group("Commands");
    sets->require_subcommand(1);
    sets->footer("Example: vx63 sets create TOKYO --from ch_set/uhf");

    const auto listing = std::make_shared<Options>();
    CLI::App* listApp = addCommand(*sets, command, "list", "List the sets", listing, list);
    listApp->add_flag("--json", listing->json, "Print a JSON object a set");
    listApp->footer("Example: vx63 sets list --usb1");

    const auto showing = std::make_shared<Options>();
    CLI::App* showApp = addCommand(*sets, command, "show", "Show the channels of a set", showing, show);
    addName(*showApp, "NAME", showing->name);
    CLI::Option* json = showApp->add_flag("--json", showing->json, "Print a JSON object a channel");
    showApp->add_flag("--csv", showing->csv, "Print the text of the file")->excludes(json);
    showApp->footer("Example: vx63 sets show TOKYO");

    const auto creation = std::make_shared<Options>();
    CLI::App* createApp =
        addCommand(*sets, command, "create", "Make a set of a channel plan", creation, create);
    addName(*createApp, "NAME", creation->name);
    createApp
        ->add_option_function<std::string>(
            "--from", [creation](const std::string& text) { creation->plan = fileNamed("--from", text); },
            "Channel plan, such as ch_set/uhf")
        ->type_name("PLAN")
        ->required();
    addNumber(*createApp, "--band", creation->ucBand, "N", "Band code of every channel [0]", 0, UINT8_MAX);
    addNumber(*createApp, "--spec", creation->ucSpec, "N", "Specification code of every channel [0]", 0,
              UINT8_MAX);
    addNumber(*createApp, "--mod", creation->ulModulation, "BITS", "Modulation bits of every channel [0]", 0,
              UINT32_MAX);
    addIdOption(*createApp, creation->id);
    createApp->footer("Example: vx63 sets create TOKYO --from ch_set/uhf");

    const auto copying = std::make_shared<Options>();
    CLI::App* copyApp = addCommand(*sets, command, "copy", "Copy a set", copying, copy);
    copyApp
        ->add_option_function<std::string>(
            "SOURCE",
            [copying](const std::string& text) {
                if (text.find('/') == std::string::npos)
                    checkSetName("SOURCE", text);
                else if (kindOf(fileNamed("SOURCE", text).fileId) != FileKind::set)
                    throw CLI::ValidationError(
                        "SOURCE", "'" + text + "' is no set; 'vx63 sets create' makes one of a plan");
                copying->source = text;
            },
            "Name of a set in the same folder, or FOLDER/NAME such as user_set/TOKYO")
        ->type_name("SOURCE")
        ->required();
    addName(*copyApp, "NEW", copying->name);
    addIdOption(*copyApp, copying->id);
    copyApp->footer("Example: vx63 sets copy user_set/TOKYO TOKYO --usb1");

    const auto deletion = std::make_shared<Options>();
    CLI::App* deleteApp = addCommand(*sets, command, "delete", "Delete a set", deletion, remove);
    addName(*deleteApp, "NAME", deletion->name);
    addYesOption(*deleteApp, deletion->yes);
    addIdOption(*deleteApp, deletion->id);
    deleteApp->footer("Example: vx63 sets delete TOKYO --yes");

    const auto clearing = std::make_shared<Options>();
    CLI::App* clearApp = addCommand(*sets, command, "clear", "Delete every set of a folder", clearing, clear);
    addYesOption(*clearApp, clearing->yes);
    addIdOption(*clearApp, clearing->id);
    clearApp->footer("Example: vx63 sets clear --usb2 --yes");
}

} // namespace tool

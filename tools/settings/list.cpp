// vx63 settings list: what settings files there are, and in what state.
#include "common/failure.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "settings/diff.h"
#include "settings/file.h"
#include "settings/record.h"
#include "settings/set_list.h"
#include "settings/subcommands.h"

#include <memory>

namespace tool {

namespace {

struct Options {
    bool json = false;
};

// What the disk tells of a file; nothing where it does not apply.
struct State {
    bool present = false;
    std::optional<uint32_t> records;
    std::optional<bool> differs; // from the factory contents
    std::optional<std::string> fault;
    std::optional<std::vector<std::string>> sets; // of a folder of sets: those that have a file
    std::string text;
};

State stateOf(uint32_t fileId)
{
    State state;
    const FileRef file{fileId, ""};
    const FileKind kind = kindOf(fileId);
    if (kind == FileKind::set) {
        state.sets = setFilesIn("/usr/local/bin/" + folderOf(fileId), fileId);
        state.present = !state.sets->empty();
        state.text = format("%zu sets", state.sets->size());
        return state;
    }
    const ReadResult read = readFile(file);
    state.present = !read.fault || !read.fault->missing;
    if (read.fault) {
        state.text = state.present ? "broken: " + faultText(*read.fault) : "missing";
        if (state.present)
            state.fault = faultText(*read.fault);
        return state;
    }
    state.records = read.contents.records;
    if (kind == FileKind::list) {
        state.text = format("%zu sets listed", listedSets(fileId, read.contents).size());
        return state;
    }
    state.differs = !differencesOf(fileId, read.contents, factoryContents(fileId)).empty();
    state.text = *state.differs ? "changed" : "as from the factory";
    return state;
}

template <class T>
nlohmann::ordered_json orNull(const std::optional<T>& value)
{
    return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json();
}

nlohmann::ordered_json stateJson(const vx63::settings::File& entry, const State& state)
{
    auto columns = nlohmann::ordered_json::array();
    for (uint32_t i = 0; i < entry.columnCount; ++i) {
        const vx63::settings::Column& column = entry.columns[i];
        columns.push_back({{"name", column.name},
                           {"type", column.type},
                           {"width", column.width},
                           {"offset", column.offset}});
    }
    nlohmann::ordered_json sets;
    if (state.sets)
        for (sets = nlohmann::ordered_json::array(); const std::string& name : *state.sets)
            sets.push_back(printable(name));
    return {
        {"id", entry.fileId},
        {"name", nameOf({entry.fileId, ""})},
        {"path", entry.path},
        {"version", vx63::settings::kVersion},
        {"header", headerOf(entry)},
        {"columns", entry.columnCount},
        {"record_bytes", entry.dataSize},
        {"rows", entry.rows},
        {"default_bytes", entry.defaultSize},
        {"column_list", columns},
        {"present", state.present},
        {"records", orNull(state.records)},
        {"differs", orNull(state.differs)},
        {"fault", state.fault ? nlohmann::ordered_json(printable(*state.fault)) : nlohmann::ordered_json()},
        {"sets", sets},
    };
}

int list(const Options& options)
{
    std::vector<std::vector<std::string>> rows = {{"ID", "FILE", "RECORDS", "STATE"}};
    for (const vx63::settings::File& entry : vx63::settings::kFiles) {
        const State state = stateOf(entry.fileId);
        if (options.json)
            print(stateJson(entry, state).dump() + "\n");
        else
            rows.push_back({std::to_string(entry.fileId), nameOf({entry.fileId, ""}),
                            std::to_string(entry.rows), state.text});
    }
    if (!options.json)
        print(table(rows));
    return kExitSuccess;
}

} // namespace

void addSettingsList(CLI::App& settings, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* app =
        settings.add_subcommand("list", "List the settings files and their state")->group("Commands");
    app->add_flag("--json", options->json, "Print a JSON object a file, its columns too");
    app->footer("Example: vx63 settings list");
    app->callback([options, &command] { command = [options] { return list(*options); }; });
}

} // namespace tool

// vx63 settings list: what settings files there are, and in what state.
#include "common/failure.h"
#include "common/json.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "settings/diff.h"
#include "settings/file.h"
#include "settings/record.h"
#include "settings/set_list.h"
#include "settings/subcommands.h"

#include <optional>
#include <string>
#include <vector>

namespace tool {

namespace {

struct Options {
    Form form = Form::text;
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
        state.sets = setFilesOf(fileId);
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

Json stateJson(const vx63::settings::File& entry, const State& state)
{
    Json columns = Json::array();
    for (uint32_t i = 0; i < entry.columnCount; ++i) {
        const vx63::settings::Column& column = entry.columns[i];
        columns.push({{"name", column.name},
                      {"type", uint32_t{column.type}},
                      {"width", column.width},
                      {"offset", column.offset}});
    }
    Json sets;
    if (state.sets)
        for (sets = Json::array(); const std::string& name : *state.sets)
            sets.push(printable(name));
    return {
        {"id", entry.fileId},
        {"name", nameOf({entry.fileId, kAnySet})},
        {"path", entry.path},
        {"version", vx63::settings::kVersion},
        {"header", headerOf(entry)},
        {"columns", entry.columnCount},
        {"record_bytes", entry.dataSize},
        {"rows", entry.rows},
        {"default_bytes", entry.defaultSize},
        {"column_list", columns},
        {"present", state.present},
        {"records", state.records},
        {"differs", state.differs},
        {"fault", state.fault ? Json(printable(*state.fault)) : Json()},
        {"sets", sets},
    };
}

int list(const Options& options)
{
    Table rows = {{"ID", "FILE", "RECORDS", "STATE"}};
    List files(options.form);
    for (const vx63::settings::File& entry : vx63::settings::kFiles) {
        const State state = stateOf(entry.fileId);
        if (options.form != Form::text)
            files.add(stateJson(entry, state));
        else
            rows.push_back({std::to_string(entry.fileId), nameOf({entry.fileId, kAnySet}),
                            std::to_string(entry.rows), state.text});
    }
    if (options.form == Form::text)
        print(table(rows));
    files.end();
    return kExitSuccess;
}

} // namespace

void addSettingsList(CommandLine& settings)
{
    settings.addCommand("list", "List the settings files and their state", "vx63 settings list", list);
}

} // namespace tool

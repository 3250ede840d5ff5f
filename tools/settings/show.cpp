// vx63 settings show and get: the records of a file.
#include "settings/show.h"

#include "common/failure.h"
#include "common/options.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "settings/arguments.h"
#include "settings/record.h"
#include "settings/subcommands.h"

#include <algorithm>
#include <memory>

namespace tool {

namespace {

// A text with anything but plain letters inside stands in quotes, its own doubled.
std::string csvCell(const std::string& text)
{
    const bool plain =
        std::ranges::none_of(text,
                             [](unsigned char c) { return c == ',' || c == '"' || c < 0x20 || c == 0x7F; }) &&
        !text.starts_with(' ') && !text.ends_with(' ');
    if (plain)
        return text;
    std::string quoted = "\"";
    for (const char letter : text)
        quoted.append(letter == '"' ? 2 : 1, letter);
    return quoted + '"';
}

struct Options {
    FileRef file{};
    bool factory = false;
    bool json = false;
    bool csv = false;
    uint32_t record = 0;
    std::string column;
};

Contents contentsOf(const Options& options)
{
    if (!options.factory)
        return readOrFactory(options.file);
    if (kindOf(options.file.fileId) != FileKind::ordinary)
        throw Failure(kExitUsage, "cannot show " + nameOf(options.file),
                      "sets and lists have no factory contents", "leave out --default");
    return factoryContents(options.file.fileId);
}

int show(const Options& options)
{
    print(shownRecords(options.file, contentsOf(options),
                       options.json  ? Form::json
                       : options.csv ? Form::csv
                                     : Form::text));
    return kExitSuccess;
}

int get(const Options& options)
{
    const vx63::settings::File& entry = entryOf(options.file);
    const vx63::settings::Column* column = requireColumn(options.file, options.column);
    const Contents contents = contentsOf(options);
    requireRecord(options.file, contents, options.record);
    print(printable(cellText(*column, contents.bytes.data() + options.record * entry.dataSize)) + "\n");
    return kExitSuccess;
}

} // namespace

std::string shownRecords(const FileRef& file, const Contents& contents, Form form)
{
    const vx63::settings::File& entry = entryOf(file);
    std::string result;
    std::vector<std::vector<std::string>> rows(1, {"RECORD"});
    if (form == Form::csv)
        result = vx63::settings::kVersion + ("\n" + headerOf(entry)) + "\n";
    for (uint32_t i = 0; i < entry.columnCount; ++i)
        rows.front().emplace_back(entry.columns[i].name);
    for (uint32_t record = 0; record < contents.records; ++record) {
        const uint8_t* bytes = contents.bytes.data() + record * entry.dataSize;
        std::vector<std::string> row(1, std::to_string(record));
        nlohmann::ordered_json json = {{"record", record}};
        std::string line;
        for (uint32_t i = 0; i < entry.columnCount; ++i) {
            const vx63::settings::Column& column = entry.columns[i];
            row.push_back(cellText(column, bytes));
            json[std::string(column.name)] = cellJson(column, bytes);
            line += (i == 0 ? "" : ",") + csvCell(row.back());
        }
        if (form == Form::json)
            result += json.dump() + "\n";
        else if (form == Form::csv)
            result += line + "\n";
        else
            rows.push_back(row);
    }
    return form == Form::text ? table(rows) : result;
}

void addSettingsShow(CLI::App& settings, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* app = settings.add_subcommand("show", "Show the records of a file")->group("Commands");
    addFileArgument(*app, options->file);
    app->add_flag("--default", options->factory, "The factory contents instead of the file");
    CLI::Option* json = app->add_flag("--json", options->json, "Print a JSON object a record");
    app->add_flag("--csv", options->csv, "Print the text of the file")->excludes(json);
    app->footer("Example: vx63 settings show ch_set/uhf --default");
    app->callback([options, &command] { command = [options] { return show(*options); }; });
}

void addSettingsGet(CLI::App& settings, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* app = settings.add_subcommand("get", "Print one value of a file")->group("Commands");
    addFileArgument(*app, options->file);
    addNumber(*app, "RECORD", options->record, "N", "Record, from 0", 0, UINT32_MAX)->required();
    app->add_option("COLUMN", options->column, "Name of the column")->type_name("NAME")->required();
    app->add_flag("--default", options->factory, "The factory contents instead of the file");
    app->footer("Example: vx63 settings get ch_set/uhf 0 CENT_FREQ");
    app->callback([options, &command] { command = [options] { return get(*options); }; });
}

} // namespace tool

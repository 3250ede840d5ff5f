// vx63 settings show and get: the records of a file.
#include "settings/show.h"

#include "common/failure.h"
#include "common/json.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "settings/arguments.h"
#include "settings/record.h"
#include "settings/subcommands.h"

#include <algorithm>
#include <string>
#include <unistd.h>
#include <vector>

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
};

struct ShowOptions : Options {
    Form form = Form::text;
};

struct GetOptions : Options {
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

int show(const ShowOptions& options)
{
    printRecords(options.file, contentsOf(options), options.form);
    return kExitSuccess;
}

int get(const GetOptions& options)
{
    const vx63::settings::File& entry = entryOf(options.file);
    const vx63::settings::Column* column = requireColumn(options.file, options.column);
    const Contents contents = contentsOf(options);
    requireRecord(options.file, contents, options.record);
    print(printable(cellText(*column, contents.bytes.data() + options.record * entry.dataSize)) + "\n");
    return kExitSuccess;
}

} // namespace

void printRecords(const FileRef& file, const Contents& contents, Form form)
{
    const vx63::settings::File& entry = entryOf(file);
    const bool onTerminal = isatty(STDOUT_FILENO) == 1;
    std::string result;
    Table rows = {{"RECORD"}};
    List objects(form == Form::csv ? Form::text : form);
    if (form == Form::csv)
        result = vx63::settings::kVersion + ("\n" + headerOf(entry)) + "\n";
    for (uint32_t i = 0; i < entry.columnCount; ++i)
        rows.front().emplace_back(entry.columns[i].name);
    for (uint32_t record = 0; record < contents.records; ++record) {
        const uint8_t* bytes = contents.bytes.data() + record * entry.dataSize;
        std::vector<Cell> row = {std::to_string(record)};
        Json json = {{"record", record}};
        std::string line;
        for (uint32_t i = 0; i < entry.columnCount; ++i) {
            const vx63::settings::Column& column = entry.columns[i];
            row.push_back(cellText(column, bytes));
            json.set(std::string(column.name), cellJson(column, bytes));
            line += (i == 0 ? "" : ",") + csvCell(onTerminal ? printable(row.back().text) : row.back().text);
        }
        if (form == Form::csv)
            result += line + "\n";
        else if (form == Form::text)
            rows.push_back(row);
        else
            objects.add(json);
    }
    print(form == Form::text ? table(rows) : result);
    objects.end();
}

void addSettingsShow(CommandLine& settings)
{
    settings.addCommand("show", "Show the records of a file", "vx63 settings show ch_set/uhf --default", show,
                        [](CommandLine& line, ShowOptions& options) {
                            addFileArgument(line, options.file).required();
                            line.flag("--default", options.factory,
                                      "The factory contents instead of the file");
                            line.csv(options.form, "Print the text of the file");
                        });
}

void addSettingsGet(CommandLine& settings)
{
    settings.addCommand("get", "Print one value of a file", "vx63 settings get ch_set/uhf 0 CENT_FREQ", get,
                        [](CommandLine& line, GetOptions& options) {
                            addFileArgument(line, options.file).required();
                            addRecordArgument(line, options.record);
                            addColumnArgument(line, options.column).required();
                            line.flag("--default", options.factory,
                                      "The factory contents instead of the file");
                        });
}

} // namespace tool

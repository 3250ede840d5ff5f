#include "settings/arguments.h"

#include "cli/suggestion.h"
#include "common/failure.h"
#include "common/text.h"
#include "settings/record.h"

namespace tool {

void addRecordArgument(CommandLine& line, uint32_t& record)
{
    line.number("RECORD", record, "N", "Record, from 0", 0, UINT32_MAX).required();
}

namespace {

std::vector<std::string> columnsOf(const FileRef& file)
{
    std::vector<std::string> names;
    const vx63::settings::File& entry = entryOf(file);
    for (uint32_t i = 0; i < entry.columnCount; ++i)
        names.emplace_back(entry.columns[i].name);
    return names;
}

// The columns of the file that stands before.
std::vector<std::string> columnsOfGiven(const cli::Given& given)
{
    try {
        return columnsOf(fileNamed("FILE", given.arguments.at(0)));
    } catch (const WrongUsage&) { // there is no such file
        return {};
    }
}

} // namespace

Option addColumnArgument(CommandLine& line, std::string& name)
{
    return line.text("COLUMN", name, "NAME", "Name of the column").offers(columnsOfGiven);
}

void addForce(CommandLine& line, bool& force)
{
    line.flag("--force", force, "Values without a meaning, too");
}

const vx63::settings::Column* requireColumn(const FileRef& file, const std::string& name)
{
    const vx63::settings::Column* column = columnNamed(entryOf(file), name);
    if (column != nullptr)
        return column;
    const std::string hint = cli::didYouMean(name, columnsOf(file));
    throw Failure(kExitUsage, "cannot find column '" + name + "'",
                  nameOf(file) + " has the columns " + headerOf(entryOf(file)),
                  hint.empty() ? "choose one of them" : hint);
}

void requireRecord(const FileRef& file, const Contents& contents, uint32_t record)
{
    if (record < contents.records)
        return;
    throw Failure(kExitUsage, format("cannot find record %u", record),
                  nameOf(file) +
                      format(" has %u record%s", contents.records, contents.records == 1 ? "" : "s"),
                  contents.records == 0   ? "choose another file"
                  : contents.records == 1 ? "choose 0"
                                          : format("choose one from 0 to %u", contents.records - 1));
}

} // namespace tool

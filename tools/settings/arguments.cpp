#include "settings/arguments.h"

#include "common/failure.h"
#include "common/text.h"
#include "settings/record.h"

namespace tool {

void addRecordArgument(CommandLine& line, uint32_t& record)
{
    line.number("RECORD", record, "N", "Record, from 0", 0, UINT32_MAX).required();
}

void addColumnArgument(CommandLine& line, std::string& name)
{
    line.text("COLUMN", name, "NAME", "Name of the column").required();
}

const vx63::settings::Column* requireColumn(const FileRef& file, const std::string& name)
{
    const vx63::settings::Column* column = columnNamed(entryOf(file), name);
    if (column == nullptr)
        throw Failure(kExitUsage, "cannot find column '" + name + "'",
                      nameOf(file) + " has the columns " + headerOf(entryOf(file)), "choose one of them");
    return column;
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

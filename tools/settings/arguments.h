// The arguments FILE, RECORD and COLUMN, and --force.
#pragma once

#include "common/command_line.h"
#include "settings/file.h"

#include <string>

namespace tool {

//   file  a FileRef, or std::optional<FileRef>
template <class File>
Option addFileArgument(CommandLine& line, File& file)
{
    return line
        .value("FILE", "FILE", "Id or name of the file, see 'vx63 settings list'",
               [&file](const std::string& text) { file = fileNamed("FILE", text); })
        .offers([](const cli::Given&) { return fileNames(); });
}

void addRecordArgument(CommandLine& line, uint32_t& record);
Option addColumnArgument(CommandLine& line, std::string& name);
void addForce(CommandLine& line, bool& force);

// Throw Failure.
const vx63::settings::Column* requireColumn(const FileRef& file, const std::string& name);
void requireRecord(const FileRef& file, const Contents& contents, uint32_t record);

} // namespace tool

// The arguments FILE, RECORD and COLUMN.
#pragma once

#include "settings/file.h"

#include <CLI/CLI.hpp>
#include <string>

namespace tool {

CLI::Option* addFileArgument(CLI::App& app, FileRef& file);

// Throw Failure.
const vx63::settings::Column* requireColumn(const FileRef& file, const std::string& name);
void requireRecord(const FileRef& file, const Contents& contents, uint32_t record);

} // namespace tool

// The records of a file, shown.
#pragma once

#include "common/list.h"
#include "settings/file.h"

namespace tool {

// Prints a table; with csv the file itself, as the platform writes it; or an object a record.
void printRecords(const FileRef& file, const Contents& contents, Form form);

} // namespace tool

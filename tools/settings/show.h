// The records of a file, shown.
#pragma once

#include "settings/file.h"

#include <string>

namespace tool {

enum class Form { text, csv, json };

// A table; the file itself, as the platform writes it; or an object a record.
std::string shownRecords(const FileRef& file, const Contents& contents, Form form);

} // namespace tool

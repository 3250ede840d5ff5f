// Other ways to read a settings file into its records.
#pragma once

#include "settings_files.h"

#include <string_view>

namespace bench {

// False where the text is no value of the column.
bool storeField(std::string_view text, const LsysColumn& column, uint8_t* record);

// False where the file is none of this kind.
bool readByStream(const FactoryFile& file, std::vector<uint8_t>& records);
[[gnu::weak]] bool readByLibcsv(const FactoryFile& file, std::vector<uint8_t>& records);

} // namespace bench

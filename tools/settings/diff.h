// What differs between the contents of two files of one kind.
#pragma once

#include "settings/file.h"

#include <string>
#include <vector>

namespace tool {

struct Difference {
    uint32_t record;
    const vx63::settings::Column* column; // null: only one of the two has the record
    bool inFirst;                         // without a column: which one
};

std::vector<Difference> differencesOf(uint32_t fileId, const Contents& first, const Contents& second);

} // namespace tool

// One look at every settings file of the meter, for all who judge them.
#pragma once

#include "settings/file.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool {

struct Finding {
    FileRef file;
    std::optional<Fault> fault;                // nothing: all is well
    uint32_t records = 0;                      // without fault
    std::vector<std::string> meaningless = {}; // values, see meaning.h
};

// Of every file, in the order of the ids; set by set in a folder of sets. A list has one more for each thing
// in which it and the sets of its folder disagree.
std::vector<Finding> examineFiles();

} // namespace tool

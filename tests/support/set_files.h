// The settings files as they are on a meter, typed for the tests.
#pragma once

#include "lsys.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vx63test {

struct SetFile {
    uint32_t id;
    std::string path; // of a set: with %s
    uint32_t columnCount;
    uint32_t recordSize;
    uint32_t rows;
    uint32_t defaultSize; // 0: no factory contents
    std::string header;
    std::vector<LsysColumn> columns;
};

inline constexpr uint32_t kSetFileCount = 50;

// A file by its id.
const SetFile& setFile(uint32_t id);

// The path of a file; the name stands for %s.
std::string pathOf(uint32_t id, std::string_view name);

// Lines of cells, separated by blanks in the order of the file's columns, as records. A "_" in a text stands
// for a blank.
std::vector<uint8_t> records(uint32_t id, std::string_view lines);

} // namespace vx63test

// The catalogue of the settings files: everything that is known of a file stands in its row. This folder
// reads and writes the files, deletes setting sets and tells the system service what changed.
#pragma once

#include "libvx63.h"
#include "lsys.h"

#include <array>
#include <cstdint>

namespace vx63 {

// A row of the catalogue.
struct SetFileDef {
    const char* path;    // of a set: a format with one %s for the set's name
    const char* version; // of the file's format
    const char* header;  // the names of the columns, separated by commas
    const LsysColumn* columns;
    uint32_t columnCount;
    uint32_t dataSize;       // bytes of a record
    uint32_t rows;           // records of the file; of a set or a list: at most
    const void* defaultData; // factory contents, as the records; null for sets and lists
    uint32_t defaultSize;    // bytes of defaultData
};

// By file id.
extern const std::array<SetFileDef, VX63_SET_FILE_COUNT> kCatalogue;

// Bytes of the largest file.
inline constexpr uint32_t kFileSizeMax = 12012;

} // namespace vx63

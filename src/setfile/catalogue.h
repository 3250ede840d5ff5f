// The catalogue of the settings files: everything that is known of a file stands in its row. This folder
// reads and writes the files, deletes setting sets and tells the system service what changed.
#pragma once

#include "libvx63.h"
#include "lsys.h"

#include <array>
#include <cstdint>

namespace vx63 {

// A row of the catalogue. All files have one version, settings::kVersion. Of few words: what is relocated
// when the library is loaded is memory of each process.
struct SetFileDef {
    const char* path;   // of a set: a format with one %s for the set's name
    const char* header; // the names of the columns, separated by commas
    const LsysColumn* columns;
    const void* defaultData; // factory contents, as the records; null for sets and lists
    uint16_t defaultSize;    // bytes of defaultData
    uint16_t columnCount;
    uint16_t dataSize; // bytes of a record
    uint16_t rows;     // records of the file; of a set or a list: at most
};

// By file id.
extern const std::array<SetFileDef, VX63_SET_FILE_COUNT> kCatalogue;

// Bytes of the largest file.
inline constexpr uint32_t kFileSizeMax = 12012;

} // namespace vx63

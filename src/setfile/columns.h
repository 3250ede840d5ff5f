// The columns of the settings files (libvx63_settings.h) as the platform's CSV functions take them, made at
// compile time.
#pragma once

#include "libvx63_settings.h"
#include "lsys.h"

#include <array>
#include <cstddef>

namespace vx63 {

// The header line of a file and its columns as the platform takes them.
template <uint32_t kFileId>
class Layout {
    static constexpr const settings::File& kFile = settings::kFiles[kFileId];

    static constexpr size_t kHeaderSize = [] {
        size_t size = kFile.columnCount; // the commas between and the terminator
        for (uint32_t i = 0; i < kFile.columnCount; ++i) {
            size += kFile.columns[i].name.size();
        }
        return size;
    }();

public:
    static constexpr auto kHeader = [] {
        std::array<char, kHeaderSize> header = {};
        size_t used = 0;
        for (uint32_t i = 0; i < kFile.columnCount; ++i) {
            if (used != 0) {
                header[used++] = ',';
            }
            for (const char letter : kFile.columns[i].name) {
                header[used++] = letter;
            }
        }
        return header;
    }();

    static constexpr auto kDescriptors = [] {
        std::array<LsysColumn, kFile.columnCount> descriptors = {};
        for (uint32_t i = 0; i < kFile.columnCount; ++i) {
            const settings::Column& column = kFile.columns[i];
            descriptors[i] = {.ulType = column.type, .ulWidth = column.width, .ulOffset = column.offset};
        }
        return descriptors;
    }();
};

} // namespace vx63

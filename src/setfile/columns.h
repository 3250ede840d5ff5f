// The columns of the settings files (libvx63_settings.h) as the platform's CSV functions take them, made at
// compile time.
#pragma once

#include "libvx63_settings.h"
#include "lsys.h"

#include <array>
#include <cstddef>
#include <iterator>

namespace vx63 {

// The header line of a file and its columns as the platform takes them.
template <const auto& kColumns>
class Layout {
    static constexpr size_t kHeaderSize = [] {
        size_t size = std::size(kColumns); // the commas between and the terminator
        for (const Column& column : kColumns) {
            size += column.name.size();
        }
        return size;
    }();

public:
    static constexpr auto kHeader = [] {
        std::array<char, kHeaderSize> header = {};
        size_t used = 0;
        for (const Column& column : kColumns) {
            if (used != 0) {
                header[used++] = ',';
            }
            for (const char letter : column.name) {
                header[used++] = letter;
            }
        }
        return header;
    }();

    static constexpr auto kDescriptors = [] {
        std::array<LsysColumn, std::size(kColumns)> descriptors = {};
        size_t i = 0;
        for (const Column& column : kColumns) {
            descriptors[i++] = {.ulType = column.type, .ulWidth = column.width, .ulOffset = column.offset};
        }
        return descriptors;
    }();
};

} // namespace vx63

// The request for a program update, as this meter understands it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace vmeter {

struct ProgramUpdate {
    char cMagic[4];    // "VXUP"
    uint8_t ucProgram; // 1 boot, 2 main, 3 sub, 4 Qt, 5 product
    uint8_t ucSource;  // 0 internal, 1 USB 1, 2 USB 2
    uint8_t ucReserved[2];
    char cVersion[16]; // printable ASCII, padded with zeros; it may fill the field
    uint32_t ulSize;   // bytes of the new program, not 0
    uint32_t ulSum;    // of the 28 bytes before
};
static_assert(sizeof(ProgramUpdate) == 32 && std::is_trivially_copyable_v<ProgramUpdate>);
static_assert(offsetof(ProgramUpdate, ucProgram) == 4);
static_assert(offsetof(ProgramUpdate, ucSource) == 5);
static_assert(offsetof(ProgramUpdate, cVersion) == 8);
static_assert(offsetof(ProgramUpdate, ulSize) == 24);
static_assert(offsetof(ProgramUpdate, ulSum) == 28);

} // namespace vmeter

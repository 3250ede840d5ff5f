// What reading and writing of CSV settings files have in common. docs/settings-files.md tells the text form.
#pragma once

#include "lsys.h"

#include <cstddef>
#include <cstdint>

#define LSYS_EXPORT extern "C" __attribute__((visibility("default")))

namespace csv {

// Lies on the caller's stack, which may be small (docs/architecture.md). A smaller one costs time.
inline constexpr size_t kChunk = 16384;

// Text that can stand without quotes: no control byte, no comma, no quote.
struct PlainBytes {
    bool is[256];
    consteval PlainBytes() : is{}
    {
        for (unsigned byte = ' '; byte < 256; ++byte)
            is[byte] = byte != ',' && byte != '"' && byte != 0x7F;
    }
};
inline constexpr PlainBytes kPlain;

constexpr bool isControl(uint8_t byte)
{
    return byte < ' ' || byte == 0x7F;
}

// Where and why a call failed. Line and column count from 1, columns as CSV has them; 0 means the whole.
struct Failure {
    int32_t code = LSYS_OK;
    int error = 0; // errno behind MISSING to NOT_FILE, FULL and SYSTEM
    uint32_t line = 0;
    uint32_t column = 0;
};

// What a failed system call means.
Failure systemFailure(int error);

// Says on stderr what failed where LSYS_DEBUG asks for it, and gives the result to return.
int32_t report(const char* path, const Failure& failure);

// Whether version and columns can be those of a file.
bool describesFile(const char* path, const char* version, uint32_t columnCount, const LsysColumn* columns,
                   uint32_t recordSize);

inline bool isText(const LsysColumn& column)
{
    return column.ulType == LSYS_TYPE_TEXT;
}

inline bool isSigned(const LsysColumn& column)
{
    return column.ulType == LSYS_TYPE_SIGNED;
}

} // namespace csv

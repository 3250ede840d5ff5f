// Where a settings file lies.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vx63 {

// Bytes of a buffer for the path of a set, the terminator included.
inline constexpr size_t kSetPathSize = 128;

// The path of a file; of a set, formed from its name (not null, inserted unchanged) in the calling thread's
// buffer of the family. Null where the buffer does not hold it: a path cut short would be another file's.
const char* pathOf(uint32_t fileId, const char* name);

} // namespace vx63

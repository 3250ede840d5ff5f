// The buffer in which a file is put together before it is written, or taken apart after it was read.
#pragma once

#include "setfile/catalogue.h"

#include <cstdint>

namespace vx63 {

// The calling thread's; holds any file of the catalogue. Clear it before use: it keeps the file before.
extern constinit thread_local uint8_t s_staging[kFileSizeMax];

} // namespace vx63

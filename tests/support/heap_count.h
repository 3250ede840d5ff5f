// How often a thread calls the heap, for a test that it does not. Add heap_count.cpp to the test program
// itself: an executable's functions win over libc's.
#pragma once

#include <cstdint>

namespace vx63test {

// Calls of malloc, calloc, realloc and free by this thread. Stays 0 under the sanitizers, which have heaps
// of their own.
inline thread_local int64_t t_heapCalls = 0;

} // namespace vx63test

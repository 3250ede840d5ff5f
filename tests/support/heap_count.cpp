#include "support/heap_count.h"

#include <cstddef>

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

using vx63test::t_heapCalls;

extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void __libc_free(void* memory);

void* malloc(size_t size)
{
    ++t_heapCalls;
    return __libc_malloc(size);
}

void* calloc(size_t count, size_t size)
{
    ++t_heapCalls;
    return __libc_calloc(count, size);
}

void* realloc(void* memory, size_t size)
{
    ++t_heapCalls;
    return __libc_realloc(memory, size);
}

void free(void* memory)
{
    ++t_heapCalls;
    __libc_free(memory);
}

} // extern "C"

#endif

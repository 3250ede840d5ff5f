// Preloaded: whatever is removed, another has removed a moment before.
#include <cstdio>
#include <dlfcn.h>
#include <unistd.h>

extern "C" int remove(const char* path)
{
    unlink(path);
    return reinterpret_cast<int (*)(const char*)>(dlsym(RTLD_NEXT, "remove"))(path);
}

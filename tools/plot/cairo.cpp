#include "plot/cairo.h"

#include "common/failure.h"

#include <dlfcn.h>

namespace tool {

void* CairoCall::address() const
{
    static void* const library = dlopen("libcairo.so.2", RTLD_NOW | RTLD_LOCAL);
    if (void* const found = library != nullptr ? dlsym(library, m_name) : nullptr)
        return found;
    const char* const why = dlerror();
    throw Failure(kExitInternal, "cannot draw a picture",
                  why != nullptr ? why : "libcairo.so.2 cannot be loaded",
                  "install libcairo2, or draw an .svg");
}

const Cairo& cairo()
{
    static const Cairo calls;
    return calls;
}

} // namespace tool

#include "live/curses.h"

#include "common/failure.h"

#include <dlfcn.h>

namespace tool {

void* CursesCall::address() const
{
    static void* const library = dlopen("libncursesw.so.6", RTLD_NOW | RTLD_LOCAL);
    if (void* const found = library != nullptr ? dlsym(library, m_name) : nullptr)
        return found;
    const char* const why = dlerror();
    throw Failure(kExitInternal, "cannot draw on the terminal",
                  why != nullptr ? why : "libncursesw.so.6 cannot be loaded",
                  "install libncursesw6, or have lines by 'vx63 live ... | cat'");
}

const Curses& curses()
{
    static const Curses calls;
    return calls;
}

} // namespace tool

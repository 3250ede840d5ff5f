#include "common/loaded.h"

#include "common/failure.h"

#include <dlfcn.h>
#include <string>

namespace tool {

void* Loaded::address() const
{
    void* const library =
        dlopen(m_library.file, RTLD_NOW | RTLD_LOCAL); // the same one each time, never unloaded
    if (void* const found = library != nullptr ? dlsym(library, m_name) : nullptr)
        return found;
    const char* const why = dlerror();
    throw Failure(kExitInternal, m_library.what,
                  why != nullptr ? why : m_library.file + std::string(" cannot be loaded"), m_library.hint);
}

} // namespace tool

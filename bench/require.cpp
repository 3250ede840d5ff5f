#include "require.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace bench {

void require(bool good, const char* what, const char* why)
{
    if (good)
        return;
    std::fprintf(stderr, "bench: %s: %s\n", what, why != nullptr ? why : std::strerror(errno));
    std::_Exit(1);
}

} // namespace bench

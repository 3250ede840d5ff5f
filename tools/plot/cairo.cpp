#include "plot/cairo.h"

namespace tool {

const Cairo& cairo()
{
    static const Cairo calls;
    return calls;
}

} // namespace tool

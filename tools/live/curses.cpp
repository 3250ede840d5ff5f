#include "live/curses.h"

namespace tool {

const Curses& curses()
{
    static const Curses calls;
    return calls;
}

} // namespace tool

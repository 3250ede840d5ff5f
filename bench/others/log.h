// Other ways to write a line into a log: each makes what writes "End. vx63_err=0" behind a head like the
// library's.
#pragma once

#include "paired.h"

namespace bench {

Body stdioLine(const std::string& path);
[[gnu::weak]] Body spdlogLine(const std::string& path);

} // namespace bench

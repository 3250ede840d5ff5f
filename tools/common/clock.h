// The time of day.
#pragma once

#include <cstdint>
#include <ctime>

namespace tool {

int64_t unixTimeMs(); // now

// As the clock on the wall shows it; all 0 for a time that has no date.
tm localTime(int64_t unixSeconds);

} // namespace tool

// The tone of vx63 live: the buzzer has no pitch, so it clicks, the faster the better C/N is.
#pragma once

#include "measure/reading.h"

#include <chrono>
#include <optional>

namespace tool {

// From one click to the next; nothing without a signal. 0.5 clicks a second at 0 dB, twice as many every 10
// dB, at most 8.
std::optional<std::chrono::milliseconds> clickInterval(const MultiMeasResult& result);

} // namespace tool

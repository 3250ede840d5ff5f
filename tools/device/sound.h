// The kinds of sound of the buzzer.
#pragma once

#include <cstdint>
#include <string>

namespace tool {

inline constexpr int32_t kSoundCount = 5;

// "click, confirmation, warning, error, alarm"
std::string soundNames();

// A kind by its name or as a number, 0 to 4; the order is that of the priorities. Throws
// WrongUsage that names the argument and the words it takes.
//   others  that stand before them in it, as "all, "
int32_t soundIn(const std::string& argument, const std::string& text, const std::string& others = "");

} // namespace tool

// Text from outside, safe on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace cli {

// The text as one line that is safe on a terminal: control characters and bytes that are no UTF-8 as
// \xNN; tabs and everything printable as they are.
std::string printable(std::string_view text);

} // namespace cli

// How wide what a program writes is shown.
#pragma once

#include <cstddef>
#include <optional>

namespace cli {

// Columns of the terminal behind the descriptor; where there is none, of COLUMNS; nothing where that is not
// set either: the text is for a file or a program.
std::optional<size_t> columnsOf(int fd);

} // namespace cli

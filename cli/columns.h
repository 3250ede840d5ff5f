// How wide what a program writes is shown.
#pragma once

#include <cstddef>

namespace cli {

// Of standard output: the width of its terminal, else COLUMNS, else 80.
size_t columnsOfOutput();

} // namespace cli

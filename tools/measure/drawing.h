// What the pictures of readings say.
#pragma once

#include "measure/echoes.h"
#include "measure/modulation_error.h"
#include "measure/reading.h"
#include "plot/levels.h"
#include "plot/picture.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace tool {

LevelBar levelBarOf(const Reading& reading);

Caption constellationCaption(const Reading& reading, const std::optional<IdealPoints>& ideal,
                             std::optional<double> merDb, size_t points);
Caption delayProfileCaption(const Reading& reading, const std::vector<Path>& paths);

} // namespace tool

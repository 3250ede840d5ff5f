// The constellation as a picture and on a terminal: square, the ideal points with it.
#pragma once

#include "measure/modulation_error.h"
#include "plot/picture.h"
#include "plot/text.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tool {

// The legend of the caption comes from the points. Throw Failure.
std::string drawConstellation(CanvasMaker maker, Caption caption, std::span<const ConstaPoint> points,
                              const std::optional<IdealPoints>& ideal);
void plotConstellation(const std::string& path, Caption caption, std::span<const ConstaPoint> points,
                       const std::optional<IdealPoints>& ideal);

// The lines of the drawing, twice as many characters as lines wide.
std::vector<std::string> constellationRows(std::span<const ConstaPoint> points,
                                           const std::optional<IdealPoints>& ideal, size_t rows,
                                           bool unicode);

// The same with a frame.
std::string constellationText(std::span<const ConstaPoint> points, const std::optional<IdealPoints>& ideal,
                              const TextStyle& style);

} // namespace tool

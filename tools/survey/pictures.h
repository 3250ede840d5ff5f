// The pictures of a report, as SVG inside a page.
#pragma once

#include "common/markup.h"
#include "survey/outcome.h"

#include <string>

namespace tool {

// The levels of the channels that have a line of their own; nothing where none has.
Markup levelsPicture(const PointOutcome& point, const ListOutcome& list);

// Nothing where none was captured.
Markup constellationPicture(const SurveyReading& reading);
Markup delayProfilePicture(const SurveyReading& reading);

} // namespace tool

// The delay profile as a picture and on a terminal, with its paths and the guard interval.
#pragma once

#include "libvx63.h"
#include "measure/echoes.h"
#include "plot/picture.h"
#include "plot/text.h"

#include <optional>
#include <string>
#include <vector>

namespace tool {

// Throw Failure.
std::string drawDelayProfile(CanvasMaker maker, const Caption& caption, const DlyPrfResult& profile,
                             const std::vector<Path>& paths, const std::optional<GuardInterval>& guard);
void plotDelayProfile(const std::string& path, const Caption& caption, const DlyPrfResult& profile,
                      const std::vector<Path>& paths, const std::optional<GuardInterval>& guard);

std::string delayProfileText(const DlyPrfResult& profile, const std::optional<GuardInterval>& guard,
                             const TextStyle& style);

} // namespace tool

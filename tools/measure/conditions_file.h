// A file of channels to measure: a JSON array with an object a channel, its keys as in the man page.
#pragma once

#include "measure/channel_list.h"

#include <string>
#include <vector>

namespace tool {

// Throws Failure that names the place: "FILE: [2].supply: must be ...".
std::vector<ListChannel> readConditions(const std::string& path);

} // namespace tool

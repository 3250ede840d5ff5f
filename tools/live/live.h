// The two ways in which vx63 live shows the channel. Both return the exit code and throw Failure.
#pragma once

#include "live/options.h"

namespace tool {

int liveOnScreen(const LiveOptions& options);
int liveInLines(const LiveOptions& options);

} // namespace tool

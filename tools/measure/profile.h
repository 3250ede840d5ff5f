// The delay profile of a channel, as the meter measures it.
#pragma once

#include "common/output.h"
#include "libvx63.h"
#include "measure/channel_options.h"

#include <memory>

namespace tool {

// The complete profile; nothing when it did not become so within the time for lock, or after an interruption.
// No other measurement may run. Throws Failure.
std::unique_ptr<DlyPrfResult> readProfile(const ChannelOptions& options, Progress& progress);

} // namespace tool

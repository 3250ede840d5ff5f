// Channels by their names, as people type them: "bs1" is "BS-1", "H11" can be "H011".
#pragma once

#include "measure/channel_plan.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

// Without case, blanks, leading zeros, and hyphens but between digits.
bool sameChannelName(std::string_view a, std::string_view b);

// With its place in a plan.
struct FoundChannel : ListChannel {
    const Plan* plan;
    PlanChanges changes; // with which the plan has it
};

// The one channel of the name: of the plan, or of all plans where there is none. Plans that have the system
// go before others. A channel that can be occupied in two ways is taken in the first one, or in that of the
// system. Throws Failure.
//   system  null where none is asked for
FoundChannel findChannel(const std::string& name, const Plan* plan, PlanChanges changes,
                         std::optional<uint16_t> system);

// So many channels behind the one that was found, or before it where `steps` is negative, as far as the plan
// goes. Throws Failure.
FoundChannel neighbourOf(const FoundChannel& channel, int steps);

// Throws Failure where the plan, or those of all plans, have a channel of the name, but none within 500 kHz
// of the condition, neither on the way to the antenna nor at the tuner. A plan that cannot be read has none.
void refuseOtherChannel(const std::string& name, const Plan* plan, const MeasCondition& condition);

// Those that are named, in the order of the plan: "13-20,27". Throws Failure.
std::vector<ListChannel> pickChannels(const std::vector<ListChannel>& channels, const std::string& names,
                                      const Plan& plan);

} // namespace tool

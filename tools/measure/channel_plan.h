// Channel plans: from the meter's settings files, or from the factory tables where a file is missing.
#pragma once

#include "measure/channel_list.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

// What the command line says in place of the plan, for all of its channels.
struct PlanChanges {
    std::optional<uint32_t> ulLoFreq;
    std::optional<uint16_t> usBdSys;
    std::optional<int32_t> powerSupply;
    uint16_t usMod = 0;
};

bool isPlan(std::string_view name);
std::string planNames(); // "uhf, bs, ..."

// The channels of a plan, in its order. A channel of a cable plan can be occupied in two ways, and is there
// as often, in one group. Throws Failure where a file is broken.
std::vector<ListChannel> planChannels(std::string_view name, const PlanChanges& changes);

} // namespace tool

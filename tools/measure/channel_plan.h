// Channel plans: from the meter's settings files, or from the factory tables where a file is missing.
#pragma once

#include "measure/channel_list.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

enum class PlanForm { named, wide, satellite, catv };

struct Plan {
    std::string_view name;
    std::string_view words; // what it is
    uint32_t fileId;
    PlanForm form;
    uint16_t band;
    uint16_t system; // that of most of its channels
};

std::span<const Plan> plans();
std::string planNames(); // "uhf, bs, ..."

// The plan, in any case of letters. Throws WrongUsage that names the option.
const Plan* planIn(const std::string& option, const std::string& name);

// What the command line says in place of the plan, for all of its channels.
struct PlanChanges {
    std::optional<uint32_t> ulLoFreq;
    std::optional<uint16_t> usBdSys;
    std::optional<int32_t> powerSupply;
    std::string modulation; // a name or a code; 8PSK has a code by system
};

// What is said on stderr of a settings file that is missing.
enum class Missing { told, silent };

// The channels of a plan, in its order. A channel of a cable plan can be occupied in two ways, QAM and OFDM,
// and is there as often, in one group, unless system or modulation leave one of them. Throws Failure where a
// file is broken.
std::vector<ListChannel> planChannels(const Plan& plan, const PlanChanges& changes,
                                      Missing missing = Missing::told);

} // namespace tool

// What vx63 measure multi and vx63 scan have in common: options, the way to the results, and what is shown.
#pragma once

#include "common/identity.h"
#include "common/list.h"
#include "measure/channel_list.h"
#include "measure/channel_plan.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool {

class CommandLine;
class Option;

struct ListOptions {
    int32_t id = kDefaultProcessId;
    std::optional<int32_t> input;
    uint8_t ucDispType = 0;
    const Plan* plan = nullptr;
    std::string channels;   // some of the plan
    std::string conditions; // a file, instead of a plan
    PlanChanges changes;
    std::string plot;
    Form form = Form::text;
    bool check = false;
};

// Declares all of them but --conditions. Returns those that a file of conditions leaves no room for, --plan
// first.
std::vector<Option> addListOptions(CommandLine& line, ListOptions& options);

// Measures and shows. Returns the exit code; throws Failure.
int runList(ListKind kind, const ListOptions& options);

} // namespace tool

// What vx63 measure multi and vx63 scan have in common: options, the way to the results, and what is shown.
#pragma once

#include "common/identity.h"
#include "measure/channel_list.h"
#include "measure/channel_plan.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>

namespace tool {

struct ListOptions {
    int32_t id = kDefaultProcessId;
    std::optional<int32_t> input;
    uint8_t ucDispType = 0;
    std::string plan;
    std::string conditions; // a file, instead of a plan
    PlanChanges changes;
    std::string modulation; // resolved once the system is known
    std::string plot;
    bool json = false;
    bool csv = false;
};

// Adds all of them but --conditions.
void addListOptions(CLI::App& app, ListOptions& options);

// To be called when the whole command line has been read. Throws CLI::ValidationError.
void resolveListModulation(ListOptions& options);

// Measures and shows. Returns the exit code; throws Failure.
int runList(ListKind kind, const ListOptions& options);

} // namespace tool

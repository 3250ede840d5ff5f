// vx63 channels: the channel plans, and what stands in them.
#include "commands.h"
#include "common/failure.h"
#include "common/json.h"
#include "common/list.h"
#include "common/names.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "measure/channel_plan.h"
#include "measure/frequency.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tool {

namespace {

struct Options {
    const Plan* plan = nullptr;
    Form form = Form::text;
};

struct Row {
    std::vector<Cell> cells;
    Json json;
};

struct Listing {
    std::vector<Cell> columns;
    std::vector<Row> rows;
};

Json systemJson(uint16_t code)
{
    const auto name = systemName(code);
    return name ? Json(*name) : Json();
}

// How far a plan reaches.
struct Extent {
    uint32_t count = 0;
    uint32_t lowestKhz = UINT32_MAX;
    uint32_t highestKhz = 0;
};

// Nothing where its file is broken.
std::optional<Extent> extentOf(const Plan& plan)
try {
    Extent extent;
    std::optional<size_t> group;
    for (const ListChannel& channel : planChannels(plan, {}, Missing::silent)) {
        extent.lowestKhz = std::min(extent.lowestKhz, channel.condition.ulFreq);
        extent.highestKhz = std::max(extent.highestKhz, channel.condition.ulFreq);
        extent.count += group != channel.group;
        group = channel.group;
    }
    return extent;
} catch (const Failure&) {
    return std::nullopt;
}

Listing listPlans()
{
    Listing listing{{"Plan", "Channels", "MHz", "System", "What it is"}, {}};
    for (const Plan& plan : plans()) {
        const std::optional<Extent> extent = extentOf(plan);
        const bool any = extent && extent->count > 0;
        const auto system = systemName(plan.system);
        listing.rows.push_back({{std::string(plan.name), extent ? format("%u", extent->count) : "broken",
                                 any ? inMhz(extent->lowestKhz) + ".." + inMhz(extent->highestKhz) : "-",
                                 std::string(system.value_or("-")), std::string(plan.words)},
                                {{"plan", plan.name},
                                 {"description", plan.words},
                                 {"channels", extent ? Json(extent->count) : Json()},
                                 {"lowest_khz", any ? Json(extent->lowestKhz) : Json()},
                                 {"highest_khz", any ? Json(extent->highestKhz) : Json()},
                                 {"system", systemJson(plan.system)}}});
    }
    return listing;
}

Listing listChannels(const Plan& plan)
{
    Listing listing{{"Channel", "MHz", "System", "Band", "LO MHz", "Pol", "Supply"}, {}};
    for (const ListChannel& channel : planChannels(plan, {})) {
        const MeasCondition& condition = channel.condition;
        const std::string polarisation(channel.polarisation == '\0' ? 0 : 1, channel.polarisation);
        const auto supply = powerSupplyName(static_cast<uint8_t>(condition.powerSupply));
        listing.rows.push_back(
            {{channel.name, inMhz(condition.ulFreq), std::string(systemName(condition.usBdSys).value_or("-")),
              format("%u", condition.usBand), condition.ulLoFreq == 0 ? "-" : inMhz(condition.ulLoFreq),
              polarisation.empty() ? "-" : polarisation,
              condition.powerSupply == VX63_POWER_SUPPLY_OFF ? "-" : std::string(supply.value_or("?"))},
             {{"channel", channel.name},
              {"frequency_khz", condition.ulFreq},
              {"system", systemJson(condition.usBdSys)},
              {"band", condition.usBand},
              {"lo_khz", condition.ulLoFreq},
              {"polarisation", polarisation.empty() ? Json() : Json(polarisation)},
              {"power_supply", condition.powerSupply}}});
    }
    return listing;
}

// Without columns that say nothing.
std::string textOf(Listing listing)
{
    Table rows = {std::move(listing.columns)};
    for (Row& row : listing.rows)
        rows.push_back(std::move(row.cells));
    for (size_t column = rows.front().size(); column-- > 0;)
        if (std::all_of(rows.begin() + 1, rows.end(),
                        [&](const auto& row) { return row[column].text == "-"; }))
            for (auto& row : rows)
                row.erase(row.begin() + static_cast<std::ptrdiff_t>(column));
    return table(rows);
}

int channels(const Options& options)
{
    const Listing listing = options.plan == nullptr ? listPlans() : listChannels(*options.plan);
    if (options.form == Form::text) {
        print(textOf(listing));
        return kExitSuccess;
    }
    List objects(options.form);
    for (const Row& row : listing.rows)
        objects.add(row.json);
    objects.end();
    return kExitSuccess;
}

} // namespace

void addChannels(CommandLine& program)
{
    program.addCommand(
        "channels", "Show the channel plans, or the channels of one", "vx63 channels bs", channels,
        [](CommandLine& line, Options& options) {
            line.value("PLAN", "NAME", "Channel plan: " + planNames() + " [show the plans]",
                       [&options](const std::string& text) { options.plan = planIn("PLAN", text); })
                .offers(planNames());
            line.csv(options.form);
        });
}

} // namespace tool

// vx63 status: what the services say of themselves.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/output.h"
#include "common/text.h"
#include "libvx63.h"
#include "supply.h"

#include <memory>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    bool json = false;
};

int showStatus(const Options& options)
{
    const Identity identity(options.id);
    MeasStatus status{};
    require("cannot read the measurement status", [&] { return vx63_getMeasStatus(&status); });
    const PowerSupplyInfo supply = readSupply();
    if (options.json) {
        const nlohmann::ordered_json json = {
            {"measurement_status", status.ulMeasStat},
            {"input_status", status.usInputStat},
            {"power_supply", supplyJson(supply)},
        };
        print(json.dump() + "\n");
        return kExitSuccess;
    }
    Rows rows = {
        {"Measurement status", format("0x%08X", status.ulMeasStat)},
        {"Input status", format("0x%04X", status.usInputStat)},
    };
    const Rows supplies = supplyRows(supply);
    rows.insert(rows.end(), supplies.begin(), supplies.end());
    print(aligned(rows));
    return kExitSuccess;
}

} // namespace

void addStatus(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* status = app.add_subcommand("status", "Show the status bits of the meter and its power supply")
                           ->group("Commands");
    status->add_flag("--json", options->json, "Print a JSON object");
    addIdOption(*status, options->id);
    status->footer("Example: vx63 status --json");
    status->callback([options, &command] { command = [options] { return showStatus(*options); }; });
}

} // namespace tool

// vx63 power-supply: read or switch the antenna power supply.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/json.h"
#include "common/numbers.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "libvx63.h"
#include "measure/supply.h"

#include <optional>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    std::optional<int32_t> supply;
    bool json = false;
};

int powerSupply(const Options& options)
{
    const Identity identity(options.id);
    if (options.supply) {
        require(format("cannot switch the power supply to %d", *options.supply),
                [&] { return vx63_reqPowerSupply(*options.supply); });
        return kExitSuccess;
    }
    const PowerSupplyInfo info = readSupply();
    print(options.json ? supplyJson(info).line() : aligned(supplyRows(info)));
    return kExitSuccess;
}

} // namespace

void addPowerSupply(CommandLine& program)
{
    program.addCommand(
        "power-supply", "Show the antenna power supply, or switch it", "vx63 power-supply 2", powerSupply,
        [](CommandLine& line, Options& options) {
            const Option selection = line.value(
                "SUPPLY", "off|0..4",
                "Switch to: off or 0, 1 11 V, 2 15 V, 3 11 V and tone, 4 15 V and tone [show the readings]",
                [&options](const std::string& text) {
                    options.supply = text == "off" ? VX63_POWER_SUPPLY_OFF
                                                   : static_cast<int32_t>(numberIn("SUPPLY", text, 0, 4));
                });
            line.check([&options, selection] {
                if (options.json && selection.given())
                    throw WrongUsage("--json", "shows the readings: leave SUPPLY out");
            });
        });
}

} // namespace tool

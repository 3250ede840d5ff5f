// vx63 power-supply: read or switch the antenna power supply.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/options.h"
#include "common/output.h"
#include "common/text.h"
#include "libvx63.h"
#include "measure/supply.h"

#include <memory>
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
    print(options.json ? supplyJson(info).dump() + "\n" : aligned(supplyRows(info)));
    return kExitSuccess;
}

} // namespace

void addPowerSupply(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* supply =
        app.add_subcommand("power-supply", "Show the antenna power supply, or switch it")->group("Commands");
    CLI::Option* selection =
        supply
            ->add_option_function<std::string>(
                "SUPPLY",
                [options](const std::string& text) {
                    options->supply = text == "off" ? VX63_POWER_SUPPLY_OFF
                                                    : static_cast<int32_t>(numberIn("SUPPLY", text, 0, 4));
                },
                "Switch to: off or 0, 1 11 V, 2 15 V, 3 11 V and tone, 4 15 V and tone [show the readings]")
            ->type_name("off|0..4");
    supply->add_flag("--json", options->json, "Print the readings as a JSON object")->excludes(selection);
    addIdOption(*supply, options->id);
    supply->footer("Example: vx63 power-supply 2");
    supply->callback([options, &command] { command = [options] { return powerSupply(*options); }; });
}

} // namespace tool

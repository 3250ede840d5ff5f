// vx63 power: reboot, switch off, put to sleep, wake up.
#include "commands.h"
#include "common/confirm.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/output.h"
#include "common/text.h"
#include "libvx63.h"

#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>

namespace tool {

namespace {

// ucMode of standby and wake-up.
constexpr uint8_t kWholeMeter = 0;
constexpr uint8_t kMeasuringPart = 1;

constexpr const char* kStandby[] = {"none", "meter", "measurement"}; // ulStandbyStat

struct Options {
    int32_t id = kDefaultProcessId;
    bool json = false;
    bool yes = false;
    bool force = false;
    bool measurement = false;
};

int reboot(const Options& options)
{
    constexpr const char* kWhat = "cannot reboot the meter";
    confirm(options.yes, "Reboot the meter?");
    const Identity identity(options.id);
    requireOnce(kWhat, vx63_reboot);
    return kExitSuccess;
}

int shutDown(const Options& options)
{
    constexpr const char* kWhat = "cannot switch the meter off";
    confirm(options.yes, "Switch the meter off? It can only be switched on again by hand.");
    const Identity identity(options.id);
    requireOnce(kWhat, vx63_shutdown);
    return kExitSuccess;
}

uint8_t modeOf(const Options& options)
{
    return options.measurement ? kMeasuringPart : kWholeMeter;
}

int standby(const Options& options)
{
    const Identity identity(options.id);
    require("cannot put the meter into standby",
            [&] { return options.force ? vx63_force_standby() : vx63_standby(modeOf(options)); });
    return kExitSuccess;
}

int wakeUp(const Options& options)
{
    const Identity identity(options.id);
    require("cannot wake the meter up",
            [&] { return options.force ? vx63_force_wakeup() : vx63_wakeup(modeOf(options)); });
    return kExitSuccess;
}

int showState(const Options& options)
{
    const Identity identity(options.id);
    uint32_t state = 0;
    require("cannot read the standby state", [&] { return vx63_getStandbyStat(&state); });
    const bool known = state < std::size(kStandby);
    if (options.json) {
        nlohmann::ordered_json json;
        json["standby"] = known ? nlohmann::ordered_json(kStandby[state]) : nlohmann::ordered_json(nullptr);
        json["standby_code"] = state;
        print(json.dump() + "\n");
    } else {
        print("Standby  " + (known ? kStandby[state] : format("code %u", state)) + "\n");
    }
    return kExitSuccess;
}

CLI::App* addLeaf(CLI::App& power, const char* name, const char* description, Command& command,
                  const std::shared_ptr<Options>& options, int (*work)(const Options&))
{
    CLI::App* leaf = power.add_subcommand(name, description)->group("Commands");
    addIdOption(*leaf, options->id);
    leaf->footer(std::string("Example: vx63 power ") + name);
    leaf->callback([options, work, &command] { command = [options, work] { return work(*options); }; });
    return leaf;
}

} // namespace

void addPower(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* power =
        app.add_subcommand("power", "Reboot the meter, switch it off, put it to sleep, wake it up")
            ->group("Commands");
    power->require_subcommand(1);
    power->footer("Example: vx63 power state");

    addYesOption(*addLeaf(*power, "reboot", "Restart the meter", command, options, reboot), options->yes);
    addYesOption(*addLeaf(*power, "shutdown", "Switch the meter off", command, options, shutDown),
                 options->yes);
    for (CLI::App* leaf :
         {addLeaf(*power, "standby", "Put the meter into standby", command, options, standby),
          addLeaf(*power, "wakeup", "Wake the meter up", command, options, wakeUp)}) {
        CLI::Option* force = leaf->add_flag("--force", options->force,
                                            "Force it, past the system service, even with a low battery");
        leaf->add_flag("--measurement", options->measurement, "The measuring part alone [the whole meter]")
            ->excludes(force);
    }
    addLeaf(*power, "state", "Show whether the meter is in standby", command, options, showState)
        ->add_flag("--json", options->json, "Print a JSON object");
}

} // namespace tool

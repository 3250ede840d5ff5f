// vx63 power: reboot, switch off, put to sleep, wake up.
#include "commands.h"
#include "common/confirm.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/json.h"
#include "common/output.h"
#include "common/text.h"
#include "libvx63.h"

#include <iterator>

namespace tool {

namespace {

// ucMode of standby and wake-up.
constexpr uint8_t kWholeMeter = 0;
constexpr uint8_t kMeasuringPart = 1;

constexpr const char* kStandby[] = {"none", "meter", "measurement"}; // ulStandbyStat

struct SwitchOptions {
    int32_t id = kDefaultProcessId;
    bool yes = false;
};

struct SleepOptions {
    int32_t id = kDefaultProcessId;
    bool force = false;
    bool measurement = false;
};

struct StateOptions {
    int32_t id = kDefaultProcessId;
    bool json = false;
};

int reboot(const SwitchOptions& options)
{
    constexpr const char* kWhat = "cannot reboot the meter";
    confirm(options.yes, "Reboot the meter?");
    const Identity identity(options.id);
    requireOnce(kWhat, vx63_reboot);
    return kExitSuccess;
}

int shutDown(const SwitchOptions& options)
{
    constexpr const char* kWhat = "cannot switch the meter off";
    confirm(options.yes, "Switch the meter off? It can only be switched on again by hand.");
    const Identity identity(options.id);
    requireOnce(kWhat, vx63_shutdown);
    return kExitSuccess;
}

uint8_t modeOf(const SleepOptions& options)
{
    return options.measurement ? kMeasuringPart : kWholeMeter;
}

int standby(const SleepOptions& options)
{
    const Identity identity(options.id);
    require("cannot put the meter into standby",
            [&] { return options.force ? vx63_force_standby() : vx63_standby(modeOf(options)); });
    return kExitSuccess;
}

int wakeUp(const SleepOptions& options)
{
    const Identity identity(options.id);
    require("cannot wake the meter up",
            [&] { return options.force ? vx63_force_wakeup() : vx63_wakeup(modeOf(options)); });
    return kExitSuccess;
}

int showState(const StateOptions& options)
{
    const Identity identity(options.id);
    uint32_t state = 0;
    require("cannot read the standby state", [&] { return vx63_getStandbyStat(&state); });
    const bool known = state < std::size(kStandby);
    if (options.json) {
        const Json json = {{"standby", known ? kStandby[state] : Json()}, {"standby_code", state}};
        print(json.line());
    } else {
        print("Standby  " + (known ? kStandby[state] : format("code %u", state)) + "\n");
    }
    return kExitSuccess;
}

void addSleepOptions(CommandLine& line, SleepOptions& options)
{
    const Option force =
        line.flag("--force", options.force, "Force it, past the system service, even with a low battery");
    line.flag("--measurement", options.measurement, "The measuring part alone [the whole meter]")
        .excludes(force);
}

} // namespace

void addPower(CommandLine& program)
{
    CommandLine power = program.addGroup(
        "power", "Reboot the meter, switch it off, put it to sleep, wake it up", "vx63 power state");
    power.addCommand("reboot", "Restart the meter", "vx63 power reboot", reboot);
    power.addCommand("shutdown", "Switch the meter off", "vx63 power shutdown", shutDown);
    power.addCommand("standby", "Put the meter into standby", "vx63 power standby", standby, addSleepOptions);
    power.addCommand("wakeup", "Wake the meter up", "vx63 power wakeup", wakeUp, addSleepOptions);
    power.addCommand("state", "Show whether the meter is in standby", "vx63 power state", showState);
}

} // namespace tool

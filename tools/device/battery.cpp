// vx63 battery: tell the measurement service of the battery.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "libvx63.h"

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    uint8_t state = 0;
};

int notifyBattery(const Options& options)
{
    const Identity identity(options.id);
    require("cannot tell the measurement service of the battery",
            [&] { return vx63_ntfLowBattStatChg(options.state); });
    return kExitSuccess;
}

} // namespace

void addBattery(CommandLine& program)
{
    program.addCommand("battery", "Tell the measurement service that the battery is low, or good again",
                       "vx63 battery low", notifyBattery, [](CommandLine& line, Options& options) {
                           line.choice("STATE", "low|ok", "The new state of the battery", {"low", "ok"},
                                       [&options](size_t word) { options.state = word == 0 ? 1 : 0; })
                               .required();
                       });
}

} // namespace tool

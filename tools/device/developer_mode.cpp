// vx63 developer-mode: switch the developer mode.
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

int setDeveloperMode(const Options& options)
{
    const Identity identity(options.id);
    require("cannot switch the developer mode", [&] { return vx63_setDeveloperMode(options.state); });
    return kExitSuccess;
}

} // namespace

void addDeveloperMode(CommandLine& program)
{
    program.addCommand("developer-mode", "Switch the developer mode", "vx63 developer-mode on",
                       setDeveloperMode, [](CommandLine& line, Options& options) {
                           line.choice("STATE", "on|off", "The new state", {"on", "off"},
                                       [&options](size_t word) { options.state = word == 0 ? 1 : 0; })
                               .required();
                       });
}

} // namespace tool

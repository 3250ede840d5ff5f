// vx63 factory-reset: all settings as they were at the factory.
#include "commands.h"
#include "common/confirm.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "libvx63.h"

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    bool yes = false;
};

int resetToFactory(const Options& options)
{
    constexpr const char* kWhat = "cannot reset the meter";
    confirm(options.yes, "Reset the meter to its factory default? All settings and sets are lost.");
    const Identity identity(options.id);
    requireOnce(options.id, kWhat, vx63_initFactoryDefault);
    return kExitSuccess;
}

} // namespace

void addFactoryReset(CommandLine& program)
{
    program.addCommand("factory-reset", "Reset the meter to its factory default: deletes all settings",
                       "vx63 factory-reset --yes", resetToFactory);
}

} // namespace tool

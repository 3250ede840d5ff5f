// vx63 factory-reset: all settings as they were at the factory.
#include "commands.h"
#include "common/confirm.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "libvx63.h"

#include <memory>

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
    requireOnce(kWhat, vx63_initFactoryDefault);
    return kExitSuccess;
}

} // namespace

void addFactoryReset(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* reset =
        app.add_subcommand("factory-reset", "Reset the meter to its factory default: deletes all settings")
            ->group("Commands");
    addYesOption(*reset, options->yes);
    addIdOption(*reset, options->id);
    reset->footer("Example: vx63 factory-reset --yes");
    reset->callback([options, &command] { command = [options] { return resetToFactory(*options); }; });
}

} // namespace tool

// vx63 developer-mode: switch the developer mode.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/text.h"
#include "libvx63.h"

#include <memory>

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

void addDeveloperMode(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* subcommand =
        app.add_subcommand("developer-mode", "Switch the developer mode")->group("Commands");
    subcommand
        ->add_option_function<std::string>(
            "STATE",
            [options](const std::string& text) {
                if (text != "on" && text != "off")
                    throw CLI::ValidationError("STATE", format("'%s' is neither on nor off", text.c_str()));
                options->state = text == "on" ? 1 : 0;
            },
            "The new state")
        ->type_name("on|off")
        ->required();
    addIdOption(*subcommand, options->id);
    subcommand->footer("Example: vx63 developer-mode on");
    subcommand->callback([options, &command] { command = [options] { return setDeveloperMode(*options); }; });
}

} // namespace tool

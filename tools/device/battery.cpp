// vx63 battery: tell the measurement service of the battery.
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

int notifyBattery(const Options& options)
{
    const Identity identity(options.id);
    require("cannot tell the measurement service of the battery",
            [&] { return vx63_ntfLowBattStatChg(options.state); });
    return kExitSuccess;
}

} // namespace

void addBattery(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* subcommand =
        app.add_subcommand("battery", "Tell the measurement service that the battery is low, or good again")
            ->group("Commands");
    subcommand
        ->add_option_function<std::string>(
            "STATE",
            [options](const std::string& text) {
                if (text != "low" && text != "ok")
                    throw CLI::ValidationError("STATE", format("'%s' is neither low nor ok", text.c_str()));
                options->state = text == "low" ? 1 : 0;
            },
            "The new state of the battery")
        ->type_name("low|ok")
        ->required();
    addIdOption(*subcommand, options->id);
    subcommand->footer("Example: vx63 battery low");
    subcommand->callback([options, &command] { command = [options] { return notifyBattery(*options); }; });
}

} // namespace tool

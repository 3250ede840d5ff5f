// vx63 calibrate: calibrate the meter.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "libvx63.h"

#include <memory>

namespace tool {

namespace {

// ucMode.
constexpr uint8_t kComplete = 0;
constexpr uint8_t kLevelOnly = 1;

struct Options {
    int32_t id = kDefaultProcessId;
    bool levelOnly = false;
};

int calibrate(const Options& options)
{
    const Identity identity(options.id);
    require("cannot calibrate the meter",
            [&] { return vx63_calibration(options.levelOnly ? kLevelOnly : kComplete); });
    return kExitSuccess;
}

} // namespace

void addCalibrate(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* subcommand = app.add_subcommand("calibrate", "Calibrate the meter")->group("Commands");
    subcommand->add_flag("--level-only", options->levelOnly, "Only the level [everything]");
    addIdOption(*subcommand, options->id);
    subcommand->footer("Example: vx63 calibrate --level-only");
    subcommand->callback([options, &command] { command = [options] { return calibrate(*options); }; });
}

} // namespace tool

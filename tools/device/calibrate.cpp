// vx63 calibrate: calibrate the meter.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "libvx63.h"

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

void addCalibrate(CommandLine& program)
{
    program.addCommand("calibrate", "Calibrate the meter", "vx63 calibrate --level-only", calibrate,
                       [](CommandLine& line, Options& options) {
                           line.flag("--level-only", options.levelOnly, "Only the level [everything]");
                       });
}

} // namespace tool

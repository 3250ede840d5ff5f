// vx63 brightness: brightness of the display.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/numbers.h"
#include "libvx63.h"

#include <string>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    int32_t brightness = 0;
};

constexpr uint64_t kBrightest = 2;

int32_t brightnessIn(const std::string& text)
{
    constexpr const char* kNames[] = {"dark", "middle", "bright"};
    for (int32_t i = 0; i <= static_cast<int32_t>(kBrightest); ++i)
        if (text == kNames[i])
            return i;
    return static_cast<int32_t>(numberIn("BRIGHTNESS", text, 0, kBrightest));
}

int setBrightness(const Options& options)
{
    const Identity identity(options.id);
    require("cannot set the brightness", [&] { return vx63_forceBrightness(options.brightness); });
    return kExitSuccess;
}

} // namespace

void addBrightness(CommandLine& program)
{
    program.addCommand(
        "brightness", "Set the brightness of the display", "vx63 brightness bright", setBrightness,
        [](CommandLine& line, Options& options) {
            line.value("BRIGHTNESS", "dark|middle|bright", "dark or 0, middle or 1, bright or 2",
                       [&options](const std::string& text) { options.brightness = brightnessIn(text); })
                .required();
        });
}

} // namespace tool

// vx63 volume: how loud the buzzer sounds.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/text.h"
#include "device/sound.h"
#include "libvx63.h"

#include <string>

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    int32_t first = 0; // sounds
    int32_t last = 0;
    int32_t volume = 0;
};

constexpr uint64_t kLoudest = 3;

int setVolume(const Options& options)
{
    const Identity identity(options.id);
    for (int32_t sound = options.first; sound <= options.last; ++sound)
        require(format("cannot set the volume of sound %d", sound),
                [&] { return vx63_forceBuzzerVolume(sound, options.volume); });
    return kExitSuccess;
}

} // namespace

void addVolume(CommandLine& program)
{
    program.addCommand(
        "volume", "Set the volume of the buzzer", "vx63 volume all 2", setVolume,
        [](CommandLine& line, Options& options) {
            line.value("SOUND", "SOUND", "all, " + soundNames() + ", or 0 to 4",
                       [&options](const std::string& text) {
                           const bool all = text == "all";
                           options.first = all ? 0 : soundIn("SOUND", text, "all, ");
                           options.last = all ? kSoundCount - 1 : options.first;
                       })
                .required()
                .offers("all, " + soundNames());
            line.number("VOLUME", options.volume, "0..3", "0 silent to 3", 0, kLoudest).required();
        });
}

} // namespace tool

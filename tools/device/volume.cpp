// vx63 volume: how loud the buzzer sounds.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/options.h"
#include "common/text.h"
#include "device/sound.h"
#include "libvx63.h"

#include <memory>

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

void addVolume(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* volume = app.add_subcommand("volume", "Set the volume of the buzzer")->group("Commands");
    volume
        ->add_option_function<std::string>(
            "SOUND",
            [options](const std::string& text) {
                const bool all = text == "all";
                options->first = all ? 0 : soundIn("SOUND", text);
                options->last = all ? kSoundCount - 1 : options->first;
            },
            "all, " + soundNames() + ", or 0 to 4")
        ->type_name("SOUND")
        ->required();
    addNumber(*volume, "VOLUME", options->volume, "0..3", "0 silent to 3", 0, kLoudest)->required();
    addIdOption(*volume, options->id);
    volume->footer("Example: vx63 volume all 2");
    volume->callback([options, &command] { command = [options] { return setVolume(*options); }; });
}

} // namespace tool

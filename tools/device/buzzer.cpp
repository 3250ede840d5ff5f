// vx63 buzzer: sound the buzzer, or stop it.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "device/sound.h"
#include "libvx63.h"

#include <string>

namespace tool {

namespace {

// buzzMode.
constexpr int32_t kOnce = 0;
constexpr int32_t kRepeat = 1;
constexpr int32_t kStop = 2;

struct Options {
    int32_t id = kDefaultProcessId;
    int32_t sound = 0;
    bool repeat = false;
    bool stop = false;
};

int sound(const Options& options)
{
    const Identity identity(options.id);
    require(options.stop ? "cannot stop the buzzer" : "cannot sound the buzzer", [&] {
        return vx63_buzzer(options.sound, options.stop ? kStop : options.repeat ? kRepeat : kOnce);
    });
    return kExitSuccess;
}

} // namespace

void addBuzzer(CommandLine& program)
{
    program.addCommand(
        "buzzer", "Sound the buzzer, or stop it", "vx63 buzzer alarm --repeat", sound,
        [](CommandLine& line, Options& options) {
            line.value("SOUND", "SOUND",
                       soundNames() + ", or 0 to 4: the later ones go before the earlier ones",
                       [&options](const std::string& text) { options.sound = soundIn("SOUND", text); })
                .required()
                .offers(soundNames());
            const Option repeat = line.flag("--repeat", options.repeat, "Repeat it until it is stopped");
            line.flag("--stop", options.stop, "Stop what sounds, unless it goes before SOUND")
                .excludes(repeat);
        });
}

} // namespace tool

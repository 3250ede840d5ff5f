// vx63 buzzer: sound the buzzer, or stop it.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "device/sound.h"
#include "libvx63.h"

#include <memory>

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

void addBuzzer(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* buzzer = app.add_subcommand("buzzer", "Sound the buzzer, or stop it")->group("Commands");
    buzzer
        ->add_option_function<std::string>(
            "SOUND", [options](const std::string& text) { options->sound = soundIn("SOUND", text); },
            soundNames() + ", or 0 to 4: the later ones go before the earlier ones")
        ->type_name("SOUND")
        ->required();
    CLI::Option* repeat = buzzer->add_flag("--repeat", options->repeat, "Repeat it until it is stopped");
    buzzer->add_flag("--stop", options->stop, "Stop what sounds, unless it goes before SOUND")
        ->excludes(repeat);
    addIdOption(*buzzer, options->id);
    buzzer->footer("Example: vx63 buzzer alarm --repeat");
    buzzer->callback([options, &command] { command = [options] { return sound(*options); }; });
}

} // namespace tool

// vx63 keys: which keys are pressed, once or as they change.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/interrupt.h"
#include "common/options.h"
#include "common/output.h"
#include "common/text.h"
#include "libvx63.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace tool {

namespace {

using std::chrono::milliseconds;

struct Options {
    int32_t id = kDefaultProcessId;
    bool json = false;
    bool watch = false;
    int64_t intervalMs = 100;
};

// It is always filled: a failure logs it as it is.
KeyStatus readKeys()
{
    KeyStatus keys{};
    require("cannot read the keys", [&] { return vx63_getKeyStatus(&keys); });
    return keys;
}

std::vector<int> pressed(const KeyStatus& keys)
{
    std::vector<int> list;
    for (int key = 0; key < VX63_KEYS; ++key)
        if (keys.stat[key] != 0)
            list.push_back(key);
    return list;
}

std::string pressedText(const KeyStatus& keys)
{
    std::string text;
    for (const int key : pressed(keys))
        text += (text.empty() ? "" : ", ") + std::to_string(key);
    return text.empty() ? "none" : text;
}

void show(const Options& options, const KeyStatus& keys)
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const int64_t timeMs = std::chrono::floor<milliseconds>(sinceEpoch).count();
    if (options.json) {
        const nlohmann::ordered_json json = {{"time", static_cast<double>(timeMs) / 1000},
                                             {"pressed", pressed(keys)},
                                             {"key_codes", keys.stat}};
        print(json.dump() + "\n");
    } else if (options.watch) {
        const auto seconds = static_cast<time_t>(timeMs / 1000);
        struct tm local {};
        localtime_r(&seconds, &local);
        print(format("%02d:%02d:%02d.%03d  %s\n", local.tm_hour, local.tm_min, local.tm_sec,
                     static_cast<int>(timeMs % 1000), pressedText(keys).c_str()));
    } else {
        print("Pressed  " + pressedText(keys) + "\n");
    }
}

int showKeys(const Options& options)
{
    const Identity identity(options.id);
    if (options.watch)
        catchInterruption("");
    KeyStatus keys = readKeys();
    show(options, keys);
    while (options.watch && interruption() == 0) {
        waitFor(milliseconds(options.intervalMs));
        if (interruption() != 0)
            break;
        const KeyStatus now = readKeys();
        if (!std::ranges::equal(now.stat, keys.stat))
            show(options, now);
        keys = now;
    }
    return interruption() != 0 ? kExitSignal + interruption() : kExitSuccess;
}

} // namespace

void addKeys(CLI::App& app, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* keys = app.add_subcommand("keys", "Show which keys are pressed")->group("Commands");
    CLI::Option* watch =
        keys->add_flag("--watch", options->watch, "Go on with a line for every change, until interrupted");
    keys->add_option_function<std::string>(
            "--interval",
            [options](const std::string& text) {
                options->intervalMs = secondsIn("--interval", text, 0, 3600);
            },
            "Seconds from one look to the next [0.1]")
        ->type_name("S")
        ->needs(watch);
    keys->add_flag("--json", options->json, "Print a JSON object, with --watch one a line");
    addIdOption(*keys, options->id);
    keys->footer("Example: vx63 keys --watch");
    keys->callback([options, &command] { command = [options] { return showKeys(*options); }; });
}

} // namespace tool

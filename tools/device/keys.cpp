// vx63 keys: which keys are pressed, once or as they change.
#include "commands.h"
#include "common/clock.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/interrupt.h"
#include "common/json.h"
#include "common/output.h"
#include "common/text.h"
#include "libvx63.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

namespace tool {

namespace {

using std::chrono::milliseconds;

struct Options {
    int32_t id = kDefaultProcessId;
    Form form = Form::text;
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

void show(const Options& options, const KeyStatus& keys, List& changes)
{
    const int64_t timeMs = unixTimeMs();
    if (options.form != Form::text) {
        const Json json = {{"time", static_cast<double>(timeMs) / 1000},
                           {"pressed", Json::arrayOf(pressed(keys))},
                           {"key_codes", Json::arrayOf(keys.stat)}};
        if (options.watch) {
            changes.add(json);
            changes.flush();
        } else {
            print(json.line());
        }
    } else if (options.watch) {
        const tm local = localTime(timeMs / 1000);
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
    List changes(options.watch ? options.form : Form::jsonl);
    show(options, keys, changes);
    while (options.watch && interruption() == 0) {
        waitFor(milliseconds(options.intervalMs));
        if (interruption() != 0)
            break;
        const KeyStatus now = readKeys();
        if (!std::ranges::equal(now.stat, keys.stat))
            show(options, now, changes);
        keys = now;
    }
    changes.end();
    return interruption() != 0 ? kExitSignal + interruption() : kExitSuccess;
}

} // namespace

void addKeys(CommandLine& program)
{
    program.addCommand(
        "keys", "Show which keys are pressed", "vx63 keys --watch", showKeys,
        [](CommandLine& line, Options& options) {
            const Option watch =
                line.flag("--watch", options.watch, "Go on with a line for every change, until interrupted");
            line.seconds("--interval", options.intervalMs, "Seconds from one look to the next [0.1]", 0, 3600)
                .needs(watch);
        });
}

} // namespace tool

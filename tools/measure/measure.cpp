// vx63 measure, and of its commands vx63 measure single: tune, wait for lock, read, stop.
#include "commands.h"
#include "common/failure.h"
#include "common/interrupt.h"
#include "common/options.h"
#include "common/output.h"
#include "common/text.h"
#include "libvx63.h"
#include "measure/channel_options.h"
#include "measure/reading.h"
#include "measure/single_measurement.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

struct Options {
    ChannelOptions channel;
    uint32_t count = 1;
    int64_t intervalMs = 1000;
    bool json = false;
    bool table = false;
};

void printReading(const Options& options, const SingleMeasResult& result)
{
    const Reading reading = readingNow(options.channel, result);
    if (options.json)
        print(readingJson(reading).dump() + "\n");
    else if (options.table)
        print(readingTableRow(reading));
    else
        print(readingText(reading));
}

int measureSingle(const Options& options)
{
    const Identity identity(options.channel.id);
    catchInterruption(kStoppingNotice);
    std::optional<Progress> progress(std::in_place);
    progress->show(format("Tuning to %u kHz", options.channel.condition.ulFreq));
    selectInput(options.channel.input);
    if (interruption() != 0)
        return kExitSignal + interruption();

    SingleMeasurement measurement(options.channel);
    SingleMeasResult result = measurement.readLocked(*progress);
    progress.reset();
    if (options.table && !options.json)
        print(readingTableHeader());
    uint32_t unlocked = 0;
    const auto start = Clock::now();
    for (uint32_t taken = 0; interruption() == 0;) {
        printReading(options, result);
        unlocked += result.lock == 0 && needsLock(options.channel);
        if (++taken == options.count)
            break;
        const auto due = start + taken * milliseconds(options.intervalMs);
        for (auto now = Clock::now(); now < due && interruption() == 0; now = Clock::now())
            waitFor(std::chrono::ceil<milliseconds>(due - now));
        if (interruption() == 0)
            result = measurement.read();
    }
    measurement.stop();
    if (interruption() != 0)
        return kExitSignal + interruption();
    if (unlocked > 0)
        throw noLock(options.channel,
                     options.count > 1 ? format("%u of %u readings were without it", unlocked, options.count)
                                       : "");
    return kExitSuccess;
}

void addSingle(CLI::App& measure, Command& command)
{
    const auto options = std::make_shared<Options>();
    CLI::App* single =
        measure.add_subcommand("single", "Tune one channel, wait for lock, read its values, stop")
            ->group("Commands");
    addChannelOptions(*single, options->channel);
    CLI::Option* count =
        addNumber(*single, "--count", options->count, "N", "Readings to take, one a line [1]", 1, UINT32_MAX);
    single
        ->add_option_function<std::string>(
            "--interval",
            [options](const std::string& text) {
                options->intervalMs = secondsIn("--interval", text, 0, 3600);
            },
            "Seconds from one reading to the next; 0: as fast as the meter answers [1]")
        ->type_name("S")
        ->needs(count);
    single->add_flag("--json", options->json, "Print a JSON object a reading");
    single->footer("Ctrl-C stops the measurement at the meter before the program ends.\n\n"
                   "Example: vx63 measure single --freq 557143 --count 60 --interval 1");
    single->callback([options, count, &command] {
        resolveModulation(options->channel);
        options->table = count->count() > 0;
        command = [options] { return measureSingle(*options); };
    });
}

} // namespace

void addMeasure(CLI::App& app, Command& command)
{
    CLI::App* measure = app.add_subcommand("measure", "Measure a channel or several")->group("Commands");
    measure->require_subcommand(1);
    measure->footer("Example: vx63 measure single --freq 557143 --json");

    addSingle(*measure, command);
    addConstellation(*measure, command);
    addDelayProfile(*measure, command);
    addMulti(*measure, command);
    addOptical(*measure, command);
    addDc(*measure, command);
    addMeasureAngle(*measure, command);
}

} // namespace tool

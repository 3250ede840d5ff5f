// vx63 measure, and of its commands vx63 measure single: tune, wait for lock, read, stop.
#include "commands.h"
#include "common/failure.h"
#include "common/interrupt.h"
#include "common/json.h"
#include "common/output.h"
#include "common/text.h"
#include "libvx63.h"
#include "measure/channel_options.h"
#include "measure/reading.h"
#include "measure/single_measurement.h"

#include <chrono>
#include <optional>
#include <string>

namespace tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

struct Options : ChannelOptions {
    uint32_t count = 1;
    int64_t intervalMs = 1000;
    bool json = false;
    bool table = false;
};

void printReading(const Options& options, const SingleMeasResult& result)
{
    const Reading reading = readingNow(options, result);
    if (options.json)
        print(readingJson(reading).line());
    else if (options.table)
        print(readingTableRow(reading));
    else
        print(readingText(reading));
}

int measureSingle(const Options& options)
{
    const Identity identity(options.id);
    catchInterruption(kStoppingNotice);
    std::optional<Progress> progress(std::in_place);
    progress->show(format("Tuning to %u kHz", options.condition.ulFreq));
    selectInput(options.input);
    if (interruption() != 0)
        return kExitSignal + interruption();

    SingleMeasurement measurement(options);
    SingleMeasResult result = measurement.readLocked(*progress);
    progress.reset();
    if (options.table && !options.json)
        print(readingTableHeader());
    uint32_t unlocked = 0;
    const auto start = Clock::now();
    for (uint32_t taken = 0; interruption() == 0;) {
        printReading(options, result);
        unlocked += result.lock == 0 && needsLock(options);
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
        throw noLock(options, options.count > 1
                                  ? format("%u of %u readings were without it", unlocked, options.count)
                                  : "");
    return kExitSuccess;
}

void addSingleOptions(CommandLine& line, Options& options)
{
    addChannelOptions(line, options);
    const Option count =
        line.number("--count", options.count, "N", "Readings to take, one a line [1]", 1, UINT32_MAX);
    line.seconds("--interval", options.intervalMs,
                 "Seconds from one reading to the next; 0: as fast as the meter answers [1]", 0, 3600)
        .needs(count);
    line.flag("--json", options.json, "Print a JSON object a reading");
    line.check([&options, count] {
        resolveModulation(options);
        options.table = count.given();
    });
}

} // namespace

void addMeasure(CommandLine& program)
{
    CommandLine measure = program.addGroup("measure", "Measure a channel or several",
                                           "vx63 measure single --freq 557143 --json");
    measure.addCommand("single", "Tune one channel, wait for lock, read its values, stop",
                       "vx63 measure single --freq 557143 --count 60 --interval 1", measureSingle,
                       addSingleOptions);
    addConstellation(measure);
    addDelayProfile(measure);
    addMulti(measure);
    addOptical(measure);
    addDc(measure);
    addMeasureAngle(measure);
}

} // namespace tool

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
#include "measure/verdict_check.h"

#include <chrono>
#include <optional>
#include <string>

namespace tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

struct Options : ChannelOptions {
    uint32_t count = 0; // 0: one reading, shown as such and not as a list
    int64_t intervalMs = 1000;
    Form form = Form::text;
    bool check = false;
};

// Readings on their way to standard output.
class Output {
public:
    explicit Output(const Options& options)
        : m_form(options.form), m_isList(options.count > 0 || options.form == Form::csv),
          m_list(m_isList ? m_form : Form::text)
    {
        if (m_isList && m_form == Form::text)
            print(readingTableHeader());
    }

    void add(const Reading& reading)
    {
        if (m_form == Form::text) {
            print(m_isList ? readingTableRow(reading) : readingText(reading));
        } else if (m_isList) {
            m_list.add(readingJson(reading));
            m_list.flush();
        } else {
            print(readingJson(reading).line());
        }
    }

    void end() { m_list.end(); }

private:
    Form m_form;
    bool m_isList;
    List m_list;
};

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
    Reading reading = measurement.readLocked(*progress);
    progress.reset();
    Output output(options);
    VerdictCheck verdicts;
    uint32_t unlocked = 0;
    const auto start = Clock::now();
    for (uint32_t taken = 0; interruption() == 0;) {
        output.add(reading);
        verdicts.add(reading);
        unlocked += reading.result.lock == 0 && needsLock(options.condition);
        if (++taken >= options.count)
            break;
        const auto due = start + taken * milliseconds(options.intervalMs);
        for (auto now = Clock::now(); now < due && interruption() == 0; now = Clock::now())
            waitFor(std::chrono::ceil<milliseconds>(due - now));
        if (interruption() == 0)
            reading = measurement.read();
    }
    output.end();
    measurement.stop();
    if (interruption() != 0)
        return kExitSignal + interruption();
    if (unlocked > 0)
        throw noLock(options, options.count > 1
                                  ? format("%u of %u readings were without it", unlocked, options.count)
                                  : "");
    if (options.check)
        verdicts.conclude();
    return kExitSuccess;
}

void addSingleOptions(CommandLine& line, Options& options)
{
    addChannelOptions(line, options);
    const Option count = line.number("--count", options.count, "N",
                                     "Readings to take, as a list [one, not as a list]", 1, UINT32_MAX);
    line.seconds("--interval", options.intervalMs,
                 "Seconds from one reading to the next; 0: as fast as the meter answers [1]", 0, 3600)
        .needs(count);
    line.csv(options.form);
    line.flag("--check", options.check,
              "Exit with 14 where the verdict is fail, with 15 where it is marginal");
    line.check([&options] { resolveChannel(options); });
}

} // namespace

void addMeasure(CommandLine& program)
{
    CommandLine measure = program.addGroup("measure", "Measure a channel or several",
                                           "vx63 measure single --freq 557143 --json");
    measure.addCommand("single", "Tune one channel, wait for lock, read its values, stop",
                       "vx63 measure single --channel 27 --count 60 --interval 1", measureSingle,
                       addSingleOptions);
    addConstellation(measure);
    addDelayProfile(measure);
    addMulti(measure);
    addOptical(measure);
    addDc(measure);
    addMeasureAngle(measure);
}

} // namespace tool

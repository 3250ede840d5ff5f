// vx63 measure single: tune, wait for lock, read, stop.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/interrupt.h"
#include "common/names.h"
#include "common/options.h"
#include "common/output.h"
#include "common/text.h"
#include "libvx63.h"
#include "reading.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <optional>
#include <string>

namespace tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kPollTime{200};

struct Options {
    int32_t id = kDefaultProcessId;
    std::optional<int32_t> input;
    MeasCondition condition{};
    std::string modulation; // resolved once the system is known
    uint8_t ucDispType = 0;
    int64_t lockTimeoutMs = 10000;
    uint32_t count = 1;
    int64_t intervalMs = 1000;
    bool json = false;
    bool table = false;
};

// A measurement that the meter has been told to start. However it ends, the meter is told to stop.
class Measurement {
public:
    explicit Measurement(const Options& options) : m_dispType(options.ucDispType)
    {
        const int32_t result = exchange([&] { return vx63_startSingleMeas(m_dispType, &options.condition); });
        if (result == VX63_OK)
            return;
        if (result ==
            VX63_ERR_COMM) // the request may have arrived all the same, and with it the antenna's power
            exchange([this] { return vx63_stopSingleMeas(m_dispType); });
        throw failureOf(result, "cannot start the measurement");
    }

    ~Measurement()
    {
        if (m_running && exchange([this] { return vx63_stopSingleMeas(m_dispType); }) != VX63_OK)
            complain("cannot stop the measurement: the meter may go on measuring: look at 'vx63 status'");
    }

    Measurement(const Measurement&) = delete;
    Measurement& operator=(const Measurement&) = delete;

    SingleMeasResult read()
    {
        SingleMeasResult result{};
        require("cannot read the measurement", [&] { return vx63_getSingleMeasResult(0, &result); });
        return result;
    }

    void stop()
    {
        m_running = false;
        require("cannot stop the measurement", [this] { return vx63_stopSingleMeas(m_dispType); });
    }

private:
    uint8_t m_dispType;
    bool m_running = true;
};

bool needsLock(const Options& options)
{
    return options.condition.usBdSys != kSystemLevel;
}

// The first reading with lock, or the last one before the time-out or an interruption.
SingleMeasResult readLocked(Measurement& measurement, const Options& options, Progress& progress)
{
    const auto start = Clock::now();
    const auto deadline = start + milliseconds(needsLock(options) ? options.lockTimeoutMs : 0);
    for (;;) {
        const SingleMeasResult result = measurement.read();
        const auto now = Clock::now();
        if (result.lock != 0 || now >= deadline)
            return result;
        progress.show(format("Waiting for lock: %.1f s, %s dBuV",
                             std::chrono::duration<double>(now - start).count(),
                             tenths(result.LEVEL).c_str()));
        waitFor(std::min(kPollTime, std::chrono::ceil<milliseconds>(deadline - now)));
        if (interruption() != 0)
            return result;
    }
}

void printReading(const Options& options, const SingleMeasResult& result)
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const Reading reading{std::chrono::floor<milliseconds>(sinceEpoch).count(), options.condition.ulFreq,
                          result};
    if (options.json)
        print(readingJson(reading).dump() + "\n");
    else if (options.table)
        print(readingTableRow(reading));
    else
        print(readingText(reading));
}

int measureSingle(const Options& options)
{
    const Identity identity(options.id);
    catchInterruption("\nvx63: stopping the measurement; Ctrl-C again ends at once\n");
    std::optional<Progress> progress(std::in_place);
    progress->show(format("Tuning to %u kHz", options.condition.ulFreq));
    if (options.input)
        require(format("cannot select input %d", *options.input),
                [&] { return vx63_setMeasInput(*options.input); });
    if (interruption() != 0)
        return kExitSignal + interruption();

    Measurement measurement(options);
    SingleMeasResult result = readLocked(measurement, options, *progress);
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
        throw Failure(kExitNoLock, format("no lock at %u kHz", options.condition.ulFreq),
                      options.count > 1
                          ? format("%u of %u readings were without it", unlocked, options.count)
                          : format("none within %g s", static_cast<double>(options.lockTimeoutMs) / 1000),
                      "check --freq, --lo, --system, --mod, --input, --supply and the level");
    return kExitSuccess;
}

// A code as a number or by its name.
uint16_t codeIn(const std::string& option, const std::string& text, std::optional<uint16_t> named,
                const std::string& names)
{
    if (named)
        return *named;
    if (const auto value = parseNumber(text); value && *value <= UINT16_MAX)
        return static_cast<uint16_t>(*value);
    throw CLI::ValidationError(option, format("'%s' is none of %s, nor a code from 0 to %u", text.c_str(),
                                              names.c_str(), unsigned{UINT16_MAX}));
}

void addCondition(CLI::App& app, Options& options)
{
    MeasCondition& condition = options.condition;
    addNumber(app, "--freq", condition.ulFreq, "KHZ", "Frequency to tune, in kHz", 1, UINT32_MAX)->required();
    addNumber(app, "--lo", condition.ulLoFreq, "KHZ",
              "Local-oscillator frequency of a converter, in kHz [0: none]", 0, UINT32_MAX);
    app.add_option_function<std::string>(
           "--system",
           [&condition](const std::string& text) {
               condition.usBdSys = codeIn("--system", text, systemCode(text), systemNames());
           },
           "Broadcast system: " + systemNames() + ", or its code [terrestrial]")
        ->type_name("SYSTEM");
    addNumber(app, "--band", condition.usBand, "N", "Band code [0]", 0, UINT16_MAX);
    app.add_option("--mod", options.modulation,
                   "Modulation: " + modulationNames() + ", or its code [0: whatever the system has]")
        ->type_name("MOD");
    addNumber(app, "--condition", condition.usCondition, "BITS", "Condition bits, e.g. 0x0001 [0]", 0,
              UINT16_MAX);
    app.add_option_function<std::string>(
           "--channel",
           [&condition](const std::string& text) {
               if (text.size() > sizeof condition.ucStrChan)
                   throw CLI::ValidationError("--channel", format("'%s' is longer than %zu bytes",
                                                                  text.c_str(), sizeof condition.ucStrChan));
               std::memcpy(condition.ucStrChan, text.data(), text.size());
           },
           "Channel name, up to 8 bytes")
        ->type_name("NAME");
    addNumber(app, "--supply", condition.powerSupply, "0..4",
              "Antenna power supply: 0 off, 1 11 V, 2 15 V, 3 11 V and tone, 4 15 V and tone [0]", 0, 4);
    addNumber(app, "--input", options.input, "0|1", "Select this RF input first [leave it]", 0, 1);
    addNumber(app, "--disp-type", options.ucDispType, "N", "Display type [0]", 0, UINT8_MAX);
}

} // namespace

void addMeasure(CLI::App& app, Command& command)
{
    CLI::App* measure = app.add_subcommand("measure", "Measure a channel")->group("Commands");
    measure->require_subcommand(1);
    measure->footer("Example: vx63 measure single --freq 557143 --json");

    const auto options = std::make_shared<Options>();
    CLI::App* single =
        measure->add_subcommand("single", "Tune one channel, wait for lock, read its values, stop")
            ->group("Commands");
    addCondition(*single, *options);
    single
        ->add_option_function<std::string>(
            "--lock-timeout",
            [options](const std::string& text) {
                options->lockTimeoutMs = secondsIn("--lock-timeout", text, 0, 3600);
            },
            "How long to wait for lock, in seconds [10]")
        ->type_name("S");
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
    addIdOption(*single, options->id);
    single->footer("Ctrl-C stops the measurement at the meter before the program ends.\n\n"
                   "Example: vx63 measure single --freq 557143 --count 60 --interval 1");
    single->callback([options, count, &command] {
        if (!options->modulation.empty())
            options->condition.usMod =
                codeIn("--mod", options->modulation,
                       modulationCode(options->modulation, options->condition.usBdSys), modulationNames());
        options->table = count->count() > 0;
        command = [options] { return measureSingle(*options); };
    });
}

} // namespace tool

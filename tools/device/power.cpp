// vx63 power: reboot, switch off, put to sleep, wake up.
#include "commands.h"
#include "common/confirm.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/interrupt.h"
#include "common/json.h"
#include "common/output.h"
#include "common/services.h"
#include "common/standby.h"
#include "common/text.h"
#include "libvx63.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tool {

namespace {

using namespace std::chrono;

// ucMode of standby and wake-up.
constexpr uint8_t kWholeMeter = 0;
constexpr uint8_t kMeasuringPart = 1;

struct RebootOptions {
    int32_t id = kDefaultProcessId;
    bool yes = false;
    bool wait = false;
    int64_t timeoutMs = 60'000;
};

struct SwitchOptions {
    int32_t id = kDefaultProcessId;
    bool yes = false;
};

struct SleepOptions {
    int32_t id = kDefaultProcessId;
    bool force = false;
    bool measurement = false;
};

struct StateOptions {
    int32_t id = kDefaultProcessId;
    bool json = false;
};

// Whether all services answer within the time. The library waits 10 s for the answer to a request that was
// lost in the reboot: a child process asks, which can be given up sooner.
bool allAnswer(milliseconds time)
{
    int channel[2];
    if (pipe2(channel, O_CLOEXEC) != 0)
        throw Failure(kExitInternal, "cannot wait for the meter", std::strerror(errno), "end other programs");
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) {
        // It has the process id of this program, too, which must be free when this program is killed.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent)
            _exit(EXIT_FAILURE);
        Sense sense{};
        const bool all = std::ranges::all_of(services(), [&](const Service& service) {
            return exchange([&] { return service.ask(sense); }) == VX63_OK;
        });
        _exit(all ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    close(channel[1]); // now the child alone has it: the end of the child is the end of the pipe
    pollfd ended{channel[0], POLLIN, 0};
    poll(&ended, 1, static_cast<int>(time.count()));
    close(channel[0]);
    if (child < 0)
        throw Failure(kExitInternal, "cannot wait for the meter", "no process can be made",
                      "end other programs");
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS;
}

// Comes back when all services answer again. Throws Failure.
void waitForMeter(milliseconds timeout)
{
    constexpr milliseconds kPatience{1000};
    constexpr milliseconds kPause{100};
    constexpr milliseconds kGoingDown{3000}; // until then a meter may answer although it is about to restart
    bool wasDown = false;
    const auto start = steady_clock::now();
    const auto passed = [&] { return duration_cast<milliseconds>(steady_clock::now() - start); };
    std::optional<Progress> progress(std::in_place);
    for (milliseconds now{0}; now < timeout; now = passed()) {
        progress->show(format("Rebooting: %lld s", static_cast<long long>(now.count() / 1000)));
        const bool up = allAnswer(std::min(kPatience, timeout - now));
        wasDown = wasDown || !up || now >= kGoingDown;
        if (up && wasDown) {
            progress.reset();
            print(format("The meter answers again after %.1f s\n",
                         static_cast<double>(passed().count()) / 1000));
            return;
        }
        waitFor(kPause);
    }
    throw Failure(
        kExitRestarting, "cannot wait for the meter any longer",
        format("it was rebooted and has not answered for %g s", static_cast<double>(timeout.count()) / 1000),
        "wait longer with --timeout, or see " + doctorCommand());
}

int reboot(const RebootOptions& options)
{
    constexpr const char* kWhat = "cannot reboot the meter";
    confirm(options.yes, "Reboot the meter?");
    const Identity identity(options.id);
    requireOnce(options.id, kWhat, vx63_reboot);
    if (options.wait)
        waitForMeter(milliseconds(options.timeoutMs));
    return kExitSuccess;
}

int shutDown(const SwitchOptions& options)
{
    constexpr const char* kWhat = "cannot switch the meter off";
    confirm(options.yes, "Switch the meter off? It can only be switched on again by hand.");
    const Identity identity(options.id);
    requireOnce(options.id, kWhat, vx63_shutdown);
    return kExitSuccess;
}

uint8_t modeOf(const SleepOptions& options)
{
    return options.measurement ? kMeasuringPart : kWholeMeter;
}

int standby(const SleepOptions& options)
{
    const Identity identity(options.id);
    require("cannot put the meter into standby",
            [&] { return options.force ? vx63_force_standby() : vx63_standby(modeOf(options)); });
    return kExitSuccess;
}

int wakeUp(const SleepOptions& options)
{
    constexpr const char* kWhat = "cannot wake the meter up";
    const Identity identity(options.id);
    const int32_t result =
        exchange([&] { return options.force ? vx63_force_wakeup() : vx63_wakeup(modeOf(options)); });
    if (result == VX63_OK)
        return kExitSuccess;
    const bool answered = failedCall().made && !failedCall().slow;
    const Failure failure = failureOf(result, kWhat);
    uint32_t state = kAwake;
    if (failure.code() != kExitCommunication || !answered ||
        exchange([&] { return vx63_getStandbyStat(&state); }) != VX63_OK || state == kAwake)
        throw failure;
    if (options.measurement && state == kMeterSleeps)
        throw Failure(kExitAsleep, kWhat, "the whole meter sleeps, not its measuring part alone",
                      "wake it up with " + wakeUpCommand(state));
    throw Failure(kExitCommunication, kWhat, "it answers that it cannot, as it does with a low battery",
                  "charge the battery, or use 'vx63 power wakeup --force'");
}

int showState(const StateOptions& options)
{
    const Identity identity(options.id);
    uint32_t state = 0;
    require("cannot read the standby state", [&] { return vx63_getStandbyStat(&state); });
    if (options.json)
        print(Json{{"standby", standbyJson(state)}, {"standby_code", state}}.line());
    else
        print("Standby  " + standbyText(state) + "\n");
    return kExitSuccess;
}

void addSleepOptions(CommandLine& line, SleepOptions& options)
{
    const Option force =
        line.flag("--force", options.force, "Force it, past the system service, even with a low battery");
    line.flag("--measurement", options.measurement, "The measuring part alone [the whole meter]")
        .excludes(force);
}

} // namespace

void addPower(CommandLine& program)
{
    CommandLine power = program.addGroup(
        "power", "Reboot the meter, switch it off, put it to sleep, wake it up", "vx63 power state");
    power.addCommand(
        "reboot", "Restart the meter", "vx63 power reboot --wait", reboot,
        [](CommandLine& line, RebootOptions& options) {
            const Option wait = line.flag("--wait", options.wait, "Wait until the services answer again");
            line.seconds("--timeout", options.timeoutMs, "Longest time to wait, in seconds [60]", 0.1, 3600)
                .needs(wait);
        });
    power.addCommand("shutdown", "Switch the meter off", "vx63 power shutdown", shutDown);
    power.addCommand("standby", "Put the meter into standby", "vx63 power standby", standby, addSleepOptions);
    power.addCommand("wakeup", "Wake the meter up", "vx63 power wakeup", wakeUp, addSleepOptions);
    power.addCommand("state", "Show whether the meter is in standby", "vx63 power state", showState);
}

} // namespace tool

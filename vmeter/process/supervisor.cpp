#include "process/supervisor.h"

#include "cli/printable.h"
#include "failure.h"
#include "lmsg.h"
#include "process/descriptor.h"
#include "process/fault_plan.h"
#include "process/service_loop.h"
#include "process/shared_meter.h"
#include "process/state_json.h"
#include "process/state_query.h"
#include "process/trace.h"
#include "services/power.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vmeter {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// What a command that was told to end gets before it is killed.
constexpr milliseconds kGrace{5000};
// What a service gets to finish the request in its hands.
constexpr milliseconds kServiceGrace{2000};
// A service that lived longer than this has recovered: it comes back at once the next time.
constexpr milliseconds kHealthy{1000};
constexpr milliseconds kFirstPause{50};
constexpr milliseconds kLongestPause{5000};

constexpr std::size_t kServiceCount = std::size(kServices);

// poll() until then, at least 0.
int waitMs(std::optional<Clock::time_point> until)
{
    if (!until)
        return -1;
    const auto rest = std::chrono::ceil<milliseconds>(*until - Clock::now()).count();
    return static_cast<int>(std::clamp<int64_t>(rest, 0, 60'000));
}

const char* whatToTry(int32_t lmsgError)
{
    switch (lmsgError) {
    case LMSG_ERR_PERMISSION:
    case LMSG_ERR_UNTRUSTED:
        return "a meter of another user is running here; use 'vx63-vmeter run'";
    case LMSG_ERR_RESOURCE:
        return "end other meters, or raise RLIMIT_MSGQUEUE (ulimit -q) or fs.mqueue.queues_max";
    default:
        return "see 'vx63-vmeter check'";
    }
}

class Supervisor {
public:
    Supervisor(const Scene& scene, const Supervision& supervision)
        : m_scene(scene), m_supervision(supervision), m_shared(kServiceCount, scene.faults.size()),
          m_faults(scene.seed, scene.faults, m_shared.faultCounts()), m_trace(supervision.traceFd)
    {
        m_shared.update([&scene](State& state) { state.device = initialDeviceState(scene.device); });
    }

    ~Supervisor() { endAll(); }
    Supervisor(const Supervisor&) = delete;
    Supervisor& operator=(const Supervisor&) = delete;

    int run()
    {
        takeSignals();
        auto [readEnd, writeEnd] = makePipe();
        m_readyRead = std::move(readEnd);
        m_readyWrite = std::move(writeEnd);
        for (std::size_t i = 0; i < kServiceCount; ++i)
            startService(i);
        while (!m_status)
            step();
        endAll();
        writeState();
        return *m_status;
    }

private:
    struct Process {
        pid_t pid = -1; // -1: not running
        bool ready = false;
        Clock::time_point started{};
        std::optional<Clock::time_point> comesBack;
        milliseconds pause{0}; // before the next start, after a death in bad health
    };

    bool withCommand() const { return !m_supervision.command.empty(); }

    void takeSignals()
    {
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGCHLD);
        // A caller that ignores a signal (nohup) means everything below it.
        for (std::size_t i = 0; i < std::size(CallerSignals::kNumbers); ++i) {
            const int number = CallerSignals::kNumbers[i];
            const bool terminal = number == SIGINT || number == SIGQUIT;
            const bool ours = m_supervision.controlFd < 0 && number != SIGPIPE &&
                              !m_supervision.callerSignals.ignored[i] && !(terminal && withCommand());
            if (ours)
                sigaddset(&signals, number);
            else
                signal(number, SIG_IGN);
        }
        sigprocmask(SIG_BLOCK, &signals, nullptr);
        m_signals = Descriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
        if (!m_signals)
            throw Failure("signals", errorText(errno), "close other programs");
    }

    void startService(std::size_t index)
    {
        Process& process = m_services[index];
        process.comesBack.reset();
        process.ready = false;
        process.started = Clock::now();
        const pid_t parent = getpid();
        process.pid = fork();
        if (process.pid == 0)
            beService(index, parent);
        if (process.pid < 0)
            process.comesBack = Clock::now() + kFirstPause;
    }

    [[noreturn]] void beService(std::size_t index, pid_t parent)
    {
        // A session of its own: Ctrl-C on the caller's terminal is not meant for the services.
        setsid();
        dieWithParent(parent);
        prctl(PR_SET_NAME, ("vx63-" + std::string(kServices[index]->name)).c_str()); // for ps and top
        for (const int number : CallerSignals::kNumbers)
            signal(number, number == SIGPIPE ? SIG_IGN : SIG_DFL); // a trace may be a pipe
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        const Descriptor nothing(open("/dev/null", O_RDWR | O_CLOEXEC));
        dup2(nothing.get(), STDIN_FILENO);
        dup2(nothing.get(), STDOUT_FILENO);

        const auto ready = [this, index] {
            if (writeByte(m_readyWrite.get(), static_cast<uint8_t>(index)))
                return;
            // Who waits for it would wait for ever.
            std::fprintf(stderr,
                         "vx63-vmeter: service %s: it cannot tell that it is ready: %s: start again\n",
                         kServices[index]->name, errorText(errno).c_str());
            _exit(kExitFailure);
        };
        const ServiceProcess process{
            index, m_scene, m_shared, m_faults, m_trace, ready, m_supervision.settings};
        const int32_t error = serve(process);
        std::fprintf(stderr, "vx63-vmeter: message queue of service %s: lmsg_err=%d: %s\n",
                     kServices[index]->name, static_cast<int>(error), whatToTry(error));
        _exit(kExitFailure);
    }

    static void dieWithParent(pid_t parent)
    {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) // it died before
            _exit(kExitFailure);
    }

    void startCommand()
    {
        auto [readEnd, writeEnd] = makePipe();
        const pid_t parent = getpid();
        m_command = fork();
        if (m_command < 0)
            throw Failure("fork", errorText(errno), "end other programs");
        if (m_command == 0) {
            dieWithParent(parent);
            m_supervision.callerSignals.restore();
            std::vector<char*> arguments;
            for (const std::string& argument : m_supervision.command)
                arguments.push_back(const_cast<char*>(argument.c_str()));
            arguments.push_back(nullptr);
            execvp(arguments[0], arguments.data());
            const int error = errno;
            [[maybe_unused]] const ssize_t written = write(writeEnd.get(), &error, sizeof error);
            _exit(kExitFailure);
        }
        writeEnd = Descriptor();
        int error = 0;
        if (readFully(readEnd.get(), &error, sizeof error) != sizeof error)
            return; // it runs
        waitpid(m_command, nullptr, 0);
        m_command = -1;
        const bool missing = error == ENOENT;
        std::fprintf(stderr, "vx63-vmeter: %s: %s: %s\n", cli::printable(m_supervision.command[0]).c_str(),
                     errorText(error).c_str(),
                     missing ? "give the path of a program, or a name on PATH"
                             : "give a program that can be run");
        m_status = missing ? kExitNotFound : kExitNotExecutable;
    }

    // Waits for the next thing to happen and does what it asks for.
    void step()
    {
        pollfd events[] = {{m_signals.get(), POLLIN, 0},
                           {m_readyRead.get(), POLLIN, 0},
                           {m_supervision.controlFd, POLLIN, 0},
                           {m_supervision.claimFd, POLLIN, 0}};
        poll(events, std::size(events), waitMs(nextDeadline()));
        if (events[1].revents != 0)
            takeReady();
        if (events[0].revents != 0)
            takeSignal();
        if (events[2].revents != 0)
            takeControl();
        if (events[3].revents != 0)
            answerQueries(m_supervision.claimFd, stateNow());
        reap();
        const Clock::time_point now = Clock::now();
        for (std::size_t i = 0; i < kServiceCount && !m_status; ++i)
            if (m_services[i].comesBack && *m_services[i].comesBack <= now)
                startService(i);
        if (m_killAt && *m_killAt <= now && m_command > 0) {
            kill(m_command, SIGKILL);
            m_killAt.reset();
        }
    }

    // Empty where a service that is suspended keeps it.
    std::string stateNow()
    {
        const std::optional<State> state = m_shared.stateInTime();
        return state ? stateJson(m_scene, *state, steadyMs()) : "";
    }

    void writeState()
    {
        if (m_supervision.stateJsonFd < 0)
            return;
        const std::string state = stateNow();
        if (write(m_supervision.stateJsonFd, state.data(), state.size()) !=
            static_cast<ssize_t>(state.size()))
            std::fprintf(stderr, "vx63-vmeter: --state-json: the state could not be written: "
                                 "give a file on a disk with room\n");
    }

    std::optional<Clock::time_point> nextDeadline() const
    {
        std::optional<Clock::time_point> next = m_killAt;
        for (const Process& process : m_services)
            if (process.comesBack && (!next || *process.comesBack < *next))
                next = process.comesBack;
        return next;
    }

    void takeReady()
    {
        uint8_t index = 0;
        if (read(m_readyRead.get(), &index, 1) != 1 || index >= kServiceCount)
            return;
        m_services[index].ready = true;
        if (m_begun || !std::all_of(m_services.begin(), m_services.end(),
                                    [](const Process& process) { return process.ready; }))
            return;
        m_begun = true;
        if (m_supervision.readyFd >= 0)
            writeByte(m_supervision.readyFd, '\n');
        else if (!withCommand())
            std::fputs("ready\n", stderr);
        if (withCommand())
            startCommand();
    }

    void takeSignal()
    {
        signalfd_siginfo info;
        while (read(m_signals.get(), &info, sizeof info) == sizeof info)
            if (info.ssi_signo != SIGCHLD)
                passOn(static_cast<int>(info.ssi_signo));
    }

    void takeControl()
    {
        uint8_t number = 0;
        const ssize_t got = read(m_supervision.controlFd, &number, 1);
        if (got == 1)
            passOn(number);
        else if (got == 0 || errno != EINTR)
            m_status = 128 + SIGKILL; // the caller is gone, and everything with it
    }

    // A signal for the whole program: the command's business, if there is one.
    void passOn(int number)
    {
        if (m_command > 0) {
            kill(m_command, number);
            if (!m_killAt)
                m_killAt = Clock::now() + kGrace;
        } else {
            m_status = withCommand() ? 128 + number : 0;
        }
    }

    void reap()
    {
        int how = 0;
        for (pid_t pid; (pid = waitpid(-1, &how, WNOHANG)) > 0;) {
            if (pid == m_command) {
                m_command = -1;
                m_status = WIFSIGNALED(how) ? 128 + WTERMSIG(how) : WEXITSTATUS(how);
                continue;
            }
            for (std::size_t i = 0; i < kServiceCount; ++i)
                if (m_services[i].pid == pid)
                    serviceDied(i, how);
        }
    }

    void serviceDied(std::size_t index, int how)
    {
        Process& process = m_services[index];
        process.pid = -1;
        const Clock::time_point now = Clock::now();
        // Before the start is complete, an error of the queue is one that the caller must see to.
        if (!m_begun && !process.ready && WIFEXITED(how) && WEXITSTATUS(how) == kExitFailure) {
            m_status = kExitFailure;
            return;
        }
        if (const int64_t onPurpose = m_shared.comeBackMs(index).exchange(-1); onPurpose >= 0) {
            process.comesBack = now + milliseconds(onPurpose);
            return;
        }
        if (now - process.started > kHealthy)
            process.pause = milliseconds(0);
        process.comesBack = now + process.pause;
        process.pause = std::clamp(process.pause * 2, kFirstPause, kLongestPause);
    }

    void endAll()
    {
        if (m_command > 0) {
            kill(m_command, SIGKILL);
            waitpid(m_command, nullptr, 0);
            m_command = -1;
        }
        const Clock::time_point killAt = Clock::now() + kServiceGrace;
        // One that is not ready has no request in its hands, and may ignore signals still.
        for (const Process& process : m_services)
            if (process.pid > 0)
                kill(process.pid, process.ready ? SIGTERM : SIGKILL);
        while (reapServices()) {
            if (Clock::now() >= killAt) {
                for (const Process& process : m_services)
                    if (process.pid > 0)
                        kill(process.pid, SIGKILL);
            }
            pollfd event{m_signals.get(), POLLIN, 0};
            poll(&event, 1, std::max(waitMs(killAt), 10));
            signalfd_siginfo info;
            while (read(m_signals.get(), &info, sizeof info) == sizeof info) {
            }
        }
    }

    // Gives whether any service still runs.
    bool reapServices()
    {
        bool any = false;
        for (Process& process : m_services) {
            if (process.pid > 0 && waitpid(process.pid, nullptr, WNOHANG) != 0)
                process.pid = -1;
            any = any || process.pid > 0;
        }
        return any;
    }

    const Scene& m_scene;
    const Supervision& m_supervision;
    SharedMeter m_shared;
    FaultPlan m_faults;
    Trace m_trace;
    Descriptor m_signals;
    Descriptor m_readyRead;
    Descriptor m_readyWrite;
    std::array<Process, kServiceCount> m_services;
    bool m_begun = false; // all services were ready once
    pid_t m_command = -1;
    std::optional<Clock::time_point> m_killAt; // when a command that was told to end is killed
    std::optional<int> m_status;               // set: it is over
};

} // namespace

CallerSignals CallerSignals::current()
{
    CallerSignals signals;
    for (std::size_t i = 0; i < std::size(kNumbers); ++i) {
        struct sigaction action {};
        sigaction(kNumbers[i], nullptr, &action);
        signals.ignored[i] = action.sa_handler == SIG_IGN;
    }
    return signals;
}

void CallerSignals::restore() const
{
    for (std::size_t i = 0; i < std::size(kNumbers); ++i)
        signal(kNumbers[i], ignored[i] ? SIG_IGN : SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

std::string CallerSignals::text() const
{
    std::string text;
    for (const bool one : ignored)
        text += one ? 'i' : '-';
    return text;
}

CallerSignals CallerSignals::fromText(const std::string& text)
{
    CallerSignals signals;
    for (std::size_t i = 0; i < std::size(kNumbers) && i < text.size(); ++i)
        signals.ignored[i] = text[i] == 'i';
    return signals;
}

int supervise(const Scene& scene, const Supervision& supervision)
{
    return Supervisor(scene, supervision).run();
}

} // namespace vmeter

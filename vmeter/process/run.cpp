#include "process/run.h"

#include "failure.h"
#include "model/settings.h"
#include "process/descriptor.h"
#include "process/guardian.h"
#include "process/in_place.h"
#include "process/isolation.h"
#include "process/supervisor.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vmeter {
namespace {

namespace fs = std::filesystem;

// Makes the state folder and what belongs into it, and keeps other meters from it as long as the
// descriptor is open in any process.
Descriptor takeState(const fs::path& state)
{
    const auto check = [&](const fs::path& path, const std::error_code& error) {
        if (error)
            throw Failure(path, error.message(), "give a folder that you may write to with --state");
    };
    std::error_code error;
    fs::create_directories(state, error);
    check(state, error);
    Descriptor folder(open(state.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder)
        check(state, std::error_code(errno, std::generic_category()));
    if (flock(folder.get(), LOCK_EX | LOCK_NB) != 0)
        throw Failure(state, errno == EWOULDBLOCK ? "another meter is using it" : errorText(errno),
                      "wait for its end or give another folder with --state");

    fs::create_directories(state / "log", error);
    check(state / "log", error);
    for (const char* name : kSettingsFolders) {
        fs::create_directories(state / name, error);
        check(state / name, error);
    }
    if (access((state / "log").c_str(), W_OK | X_OK) != 0)
        check(state / "log", std::error_code(errno, std::generic_category()));
    return folder;
}

// A memory file that holds the arguments as bubblewrap reads them.
Descriptor argumentFile(const std::vector<std::string>& arguments)
{
    std::string text;
    for (const std::string& argument : arguments)
        text.append(argument) += '\0';
    Descriptor file(memfd_create("arguments", MFD_CLOEXEC));
    if (!file || write(file.get(), text.data(), text.size()) < 0)
        throw Failure("memory file", errorText(errno), "free some memory");
    lseek(file.get(), 0, SEEK_SET);
    return file;
}

// SIGTERM and SIGHUP are taken from a descriptor; what the terminal sends is the command's business.
Descriptor takeSignals(const CallerSignals& caller)
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGCHLD);
    for (std::size_t i = 0; i < std::size(CallerSignals::kNumbers); ++i) {
        const int number = CallerSignals::kNumbers[i];
        if ((number == SIGTERM || number == SIGHUP) && !caller.ignored[i])
            sigaddset(&signals, number);
        else
            signal(number, SIG_IGN);
    }
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return Descriptor(signalfd(-1, &signals, SFD_CLOEXEC));
}

// Waits for the child and passes signals on to the command. Gives the child's status.
int waitFor(pid_t child, const Descriptor& signals, const Descriptor& control)
{
    for (;;) {
        int how = 0;
        if (waitpid(child, &how, WNOHANG) == child)
            return how;
        signalfd_siginfo info;
        if (read(signals.get(), &info, sizeof info) == sizeof info && info.ssi_signo != SIGCHLD)
            writeByte(control.get(), static_cast<uint8_t>(info.ssi_signo));
    }
}

} // namespace

int openScene(const std::string& path)
{
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (file < 0)
        throw Failure(path, errorText(errno), "give a file that you may read with --scene");
    return file;
}

int openStateJson(const std::string& path)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOCTTY, 0666);
    if (file < 0)
        throw Failure(path, errorText(errno), "give a file that you may write to with --state-json");
    return file;
}

int openTrace(const std::string& path)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY, 0666);
    if (file < 0)
        throw Failure(path, errorText(errno), "give a file that you may write to with --trace");
    return file;
}

int run(const RunOptions& options)
{
    std::optional<fs::path> state;
    Descriptor stateLock;
    if (options.state) {
        state = fs::absolute(*options.state);
        stateLock = takeState(*state);
    }
    const Descriptor scene(options.scene ? openScene(*options.scene) : -1);
    const Descriptor trace(options.trace ? openTrace(*options.trace) : -1);
    const Descriptor stateJson(options.stateJson ? openStateJson(*options.stateJson) : -1);

    Pipe control = makePipe();
    const Pipe begun = makePipe(); // a byte: the surroundings are made and serve has begun
    const Descriptor words(options.inPlace ? -1 : fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));

    const CallerSignals callerSignals = CallerSignals::current();
    std::vector<std::string> inside = {ownPath(),
                                       "serve",
                                       "--inside",
                                       std::to_string(control.readEnd.get()),
                                       "--begun",
                                       std::to_string(begun.writeEnd.get()),
                                       "--signals=" + callerSignals.text(),
                                       "--settings",
                                       options.emptySettings ? "empty" : "factory"};
    if (words)
        inside.insert(inside.end(), {"--words", std::to_string(words.get())});
    if (stateLock)
        inside.insert(inside.end(), {"--hold", std::to_string(stateLock.get())});
    if (trace)
        inside.insert(inside.end(), {"--trace-fd", std::to_string(trace.get())});
    if (stateJson)
        inside.insert(inside.end(), {"--state-json-fd", std::to_string(stateJson.get())});
    if (scene)
        inside.insert(inside.end(), {"--scene", *options.scene, "--scene-fd", std::to_string(scene.get())});
    for (const std::string& fault : options.faults)
        inside.insert(inside.end(), {"--fault", fault});
    inside.push_back("--");
    inside.insert(inside.end(), options.command.begin(), options.command.end());

    const Descriptor signals = takeSignals(callerSignals);
    if (!signals)
        throw Failure("signals", errorText(errno), "close other programs");
    adoptOrphans();
    Namespaces namespaces = wantedNamespaces();
    // Most machines allow all namespaces: they are tried out only where the first attempt, which is quiet,
    // fails.
    for (bool quiet = !options.inPlace;; quiet = false) {
        std::vector<std::string> outside;
        Descriptor arguments;
        if (!options.inPlace) {
            const std::vector<std::string> all = bubblewrapArguments(namespaces, state);
            arguments = argumentFile({all.begin() + 1, all.end()});
            outside = {all.front(), "--args", std::to_string(arguments.get()), "--"};
            outside.insert(outside.end(), inside.begin(), inside.end());
        }

        const pid_t child = fork();
        if (child < 0)
            throw Failure("fork", errorText(errno), "end other programs");
        if (child == 0) {
            // Whatever was sent to the whole process group comes in through the control pipe, too.
            for (const int number : CallerSignals::kNumbers)
                signal(number, SIG_IGN);
            sigset_t none;
            sigemptyset(&none);
            sigprocmask(SIG_SETMASK, &none, nullptr);
            control.writeEnd = Descriptor();
            for (const Descriptor* handed : std::initializer_list<const Descriptor*>{
                     &control.readEnd, &begun.writeEnd, &words, &stateLock, &scene, &trace, &stateJson})
                if (*handed)
                    handed->inherit();
            if (options.inPlace) {
                InPlace inPlace(state);
                guard(inside, [&inPlace] { return inPlace.cleanUp(); });
            }
            if (quiet && words)
                dup2(Descriptor(open("/dev/null", O_WRONLY | O_CLOEXEC)).get(), STDERR_FILENO);
            arguments.inherit();
            guard(outside);
        }

        const int how = waitFor(child, signals, control.writeEnd);
        if (WIFSIGNALED(how)) { // the guardian itself was killed
            killDescendants();
            if (options.inPlace)
                cleanUpKilled();
        }
        const int status = WIFSIGNALED(how) ? 128 + WTERMSIG(how) : WEXITSTATUS(how);

        uint8_t byte = 0;
        fcntl(begun.readEnd.get(), F_SETFL, O_NONBLOCK);
        const bool hasBegun = readFully(begun.readEnd.get(), &byte, 1) == 1;
        if (!hasBegun && quiet)
            namespaces = tryNamespaces();
        if (!hasBegun && status < 128) {
            if (quiet)
                continue;
            if (status != kExitFailure)
                throw Failure("bubblewrap", "it could not make the surroundings (see above)",
                              "see 'vx63-vmeter check'");
        }
        return status;
    }
}

} // namespace vmeter

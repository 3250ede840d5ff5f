#include "process/isolation.h"

#include "failure.h"
#include "model/settings.h"
#include "process/descriptor.h"
#include "process/guardian.h"

#include <algorithm>
#include <cerrno>
#include <sys/wait.h>
#include <unistd.h>

namespace vmeter {
namespace {

namespace fs = std::filesystem;

constexpr const char* kBubblewrap = "bwrap";
constexpr const char* kWithoutNamespaces =
    "allow user namespaces on this machine, or use 'vx63-vmeter run --in-place' in a container of its own";

fs::path needFolder(const char* folder)
{
    std::error_code error;
    fs::path path = fs::canonical(folder, error);
    if (!error && !fs::is_directory(path, error))
        error = std::make_error_code(std::errc::not_a_directory);
    if (error)
        throw Failure(folder, error.message(), "create it as a folder");
    return path;
}

// Shows in the private kProgramFolder what the machine keeps there: every program at its own path, so that
// it finds what it looks for beside itself.
void showPrograms(const fs::path& folder, std::vector<std::string>& arguments)
{
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        const fs::path path = entry->path();
        const std::string name = path.filename();
        if (std::any_of(std::begin(kSettingsFolders), std::end(kSettingsFolders),
                        [&](const char* settings) { return name == settings; }))
            continue;
        std::error_code linkError;
        if (entry->is_symlink(linkError))
            arguments.insert(arguments.end(), {"--symlink", fs::read_symlink(path, linkError), path});
        else
            arguments.insert(arguments.end(), {"--ro-bind-try", path, path});
    }
}

struct Outcome {
    int status; // as waitpid() gives it
    std::string said;
};

// Runs a program to its end with both outputs caught.
Outcome runQuietly(const std::vector<std::string>& arguments)
{
    auto [readEnd, writeEnd] = makePipe();
    adoptOrphans();
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(writeEnd.get(), STDOUT_FILENO);
        dup2(writeEnd.get(), STDERR_FILENO);
        guard(arguments);
    }
    if (pid < 0)
        throw Failure("fork", errorText(errno), "end other programs");
    writeEnd = Descriptor();
    Outcome outcome{};
    while (waitpid(pid, &outcome.status, 0) < 0 && errno == EINTR) {
    }
    if (WIFSIGNALED(outcome.status)) // the guardian itself was killed
        killDescendants();
    // What it said fits into the pipe.
    char text[512];
    for (std::size_t got; (got = readFully(readEnd.get(), text, sizeof text)) > 0;)
        outcome.said.append(text, got);
    while (!outcome.said.empty() && outcome.said.back() == '\n')
        outcome.said.pop_back();
    std::replace(outcome.said.begin(), outcome.said.end(), '\n', ' ');
    return outcome;
}

bool succeeded(const Outcome& outcome)
{
    return WIFEXITED(outcome.status) && WEXITSTATUS(outcome.status) == 0;
}

Outcome attempt(const Namespaces& namespaces)
{
    std::vector<std::string> arguments = bubblewrapArguments(namespaces, std::nullopt);
    arguments.insert(arguments.end(), {"--", ownPath(), "check", "--inside"});
    return runQuietly(arguments);
}

} // namespace

std::string ownPath()
{
    std::error_code error;
    const fs::path path = fs::read_symlink("/proc/self/exe", error);
    if (error)
        throw Failure("/proc/self/exe", error.message(), "mount /proc");
    return path;
}

std::vector<std::string> bubblewrapArguments(const Namespaces& namespaces,
                                             const std::optional<fs::path>& state)
{
    const fs::path log = needFolder(kLogFolder);
    const fs::path programs = needFolder(kProgramFolder);

    std::vector<std::string> arguments = {kBubblewrap,     "--dev-bind",       "/", "/", "--unshare-ipc",
                                          "--unshare-pid", "--die-with-parent"};
    if (namespaces.proc)
        arguments.insert(arguments.end(), {"--proc", "/proc"});
    if (namespaces.mqueue)
        arguments.insert(arguments.end(), {"--mqueue", "/dev/mqueue"});

    if (state)
        arguments.insert(arguments.end(), {"--bind", *state / "log", log});
    else
        arguments.insert(arguments.end(), {"--tmpfs", log});
    arguments.insert(arguments.end(), {"--tmpfs", programs});
    showPrograms(programs, arguments);
    for (const char* folder : kSettingsFolders) {
        const fs::path inside = programs / folder;
        if (state)
            arguments.insert(arguments.end(), {"--bind", *state / folder, inside});
        else
            arguments.insert(arguments.end(), {"--tmpfs", inside});
    }
    return arguments;
}

Namespaces wantedNamespaces()
{
    std::error_code error;
    return {.mqueue = fs::is_directory("/dev/mqueue", error)};
}

Namespaces tryNamespaces()
{
    const Namespaces namespaces = wantedNamespaces();
    const bool folder = namespaces.mqueue;

    Outcome first = attempt(namespaces);
    if (WIFEXITED(first.status) && WEXITSTATUS(first.status) == kExitNotFound)
        throw Failure(kBubblewrap, "not found on PATH",
                      "install it (apt-get install bubblewrap), or use 'vx63-vmeter run --in-place'");
    if (succeeded(first))
        return namespaces;

    // Containers often refuse a new /proc or mqueue; a meter can do without.
    for (const Namespaces less :
         {Namespaces{false, folder}, Namespaces{true, false}, Namespaces{false, false}})
        if (succeeded(attempt(less)))
            return less;
    throw Failure("namespaces", first.said.empty() ? "refused" : first.said, kWithoutNamespaces);
}

} // namespace vmeter

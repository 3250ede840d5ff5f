#include "process/guardian.h"

#include "failure.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vmeter {
namespace {

namespace fs = std::filesystem;

// Children of this process, also those it got because their parents died.
std::vector<pid_t> children()
{
    std::vector<pid_t> found;
    std::error_code error;
    for (fs::directory_iterator entry("/proc", error), end; !error && entry != end; entry.increment(error)) {
        const pid_t pid = std::atoi(entry->path().filename().c_str());
        std::ifstream file(entry->path() / "stat");
        std::string stat;
        if (pid <= 0 || !std::getline(file, stat))
            continue;
        // PID (NAME) STATE PPID ...; the name can hold anything.
        char state = 0;
        int parent = 0;
        const std::size_t at = stat.rfind(')');
        if (at != std::string::npos && std::sscanf(stat.c_str() + at + 1, " %c %d", &state, &parent) == 2 &&
            parent == getpid())
            found.push_back(pid);
    }
    return found;
}

[[noreturn]] void become(const std::vector<std::string>& program)
{
    std::vector<char*> argv;
    for (const std::string& argument : program)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execvp(argv[0], argv.data());
    _exit(errno == ENOENT ? kExitNotFound : kExitNotExecutable);
}

} // namespace

void guard(const std::vector<std::string>& program, const std::function<bool()>& cleanUp)
{
    adoptOrphans();
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) // it died before
            _exit(kExitFailure);
        become(program);
    }
    if (child < 0)
        std::fprintf(stderr, "vx63-vmeter: fork: %s: end other programs\n", errorText(errno).c_str());
    int how = 0;
    pid_t ended = -1;
    while (child > 0 && ended != child)
        ended = waitpid(-1, &how, 0);
    killDescendants();
    const bool clean = !cleanUp || cleanUp();
    const int status = child < 0 ? kExitFailure : WIFSIGNALED(how) ? 128 + WTERMSIG(how) : WEXITSTATUS(how);
    _exit(status == 0 && !clean ? kExitFailure : status);
}

void adoptOrphans()
{
    prctl(PR_SET_CHILD_SUBREAPER, 1);
}

void killDescendants()
{
    for (;;) {
        pid_t ended;
        while ((ended = waitpid(-1, nullptr, WNOHANG)) > 0) {
        }
        if (ended < 0) // no child is left
            return;
        bool any = false;
        for (const pid_t pid : children())
            any = kill(pid, SIGKILL) == 0 || any;
        if (!any)
            return;
        // Their own children come to us when they are gone.
        waitpid(-1, nullptr, 0);
    }
}

} // namespace vmeter

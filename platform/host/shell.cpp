// Runs commands by the shell.
//
// The application may ignore SIGCHLD, or reap every child of the process in a handler or another thread: then
// waitpid() tells nothing. So a second shell around the command's own one also notes how it has ended, in a
// file in memory that it reaches through /proc: no descriptor has to be inherited, which every child that the
// application starts meanwhile would inherit as well.
#include "csv.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// $1 the file that takes the note, $2 the command. Without input: rm would ask on the caller's terminal about
// a file that is write-protected, and wait.
constexpr char kScript[] = R"(/bin/sh -c -- "$2" </dev/null; status=$?
{ echo "$status" >"$1"; } 2>/dev/null
exit "$status")";

// Starts the shells with SIGCHLD as it is by default: they wait for children themselves.
int start(const char* note, const char* command, pid_t& child)
{
    posix_spawnattr_t attributes;
    const int error = posix_spawnattr_init(&attributes);
    if (error != 0)
        return error;
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGCHLD);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

    // posix_spawn() takes its arguments as execve() does and leaves them alone.
    const char* const arguments[] = {"sh", "-c", kScript, "sh", note, command, nullptr};
    const int result =
        posix_spawn(&child, "/bin/sh", nullptr, &attributes, const_cast<char* const*>(arguments), environ);
    posix_spawnattr_destroy(&attributes);
    return result;
}

// How the child has ended.
int32_t finish(pid_t child, int note)
{
    int status;
    pid_t waited;
    do {
        waited = waitpid(child, &status, 0);
    } while (waited < 0 && errno == EINTR);
    if (waited == child)
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);

    char text[sizeof "255\n"] = "";
    if (pread(note, text, sizeof text - 1, 0) <= 0)
        return LSYS_ERR_SYSTEM;
    return static_cast<int32_t>(strtol(text, nullptr, 10));
}

} // namespace

LSYS_EXPORT int32_t lsys_system(const char* pcCommand)
{
    if (pcCommand == nullptr)
        return LSYS_ERR_ARG;
    const int note = memfd_create("lsys_system", MFD_CLOEXEC);
    if (note < 0)
        return LSYS_ERR_SYSTEM;
    char path[sizeof "/proc/-2147483648/fd/-2147483648"];
    snprintf(path, sizeof path, "/proc/%d/fd/%d", getpid(), note);
    pid_t child;
    const int32_t result = start(path, pcCommand, child) == 0 ? finish(child, note) : LSYS_ERR_SYSTEM;
    close(note);
    return result;
}

#include "libc_hooks.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

thread_local bool t_inHook = false; // what the hook itself calls is passed on

// Whether the call is to fail.
bool fails(const char* call)
{
    if (!hooks::s_onCall || t_inHook)
        return false;
    const int before = errno; // which a call that succeeds leaves alone
    t_inHook = true;
    const int error = hooks::s_onCall(call);
    t_inHook = false;
    errno = error != 0 ? error : before;
    return error != 0;
}

// libc's own function behind the hook, or the sanitizer's, which has to see what happens to descriptors.
template <class Function>
Function* real(Function*, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

void hooks::reset()
{
    s_onCall = nullptr;
    s_writeLimit = SIZE_MAX;
    s_onSpawn = nullptr;
    s_emptiedSets = 0;
}

// What they are called on a 32-bit machine with 64-bit times and file sizes; in a declaration the headers see
// to it.
#if __SIZEOF_POINTER__ == 4
constexpr char kOpenat[] = "openat64";
constexpr char kFstat[] = "__fstat64_time64";
constexpr char kFstatat[] = "__fstatat64_time64";
#else
constexpr char kOpenat[] = "openat";
constexpr char kFstat[] = "fstat";
constexpr char kFstatat[] = "fstatat";
#endif

extern "C" {

int openat(int folder, const char* path, int flags, ...)
{
    static const auto passed = real(&openat, kOpenat);
    if (fails("openat"))
        return -1;
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return passed(folder, path, flags, mode);
}

int fstat(int file, struct stat* status) noexcept
{
    static const auto passed = real(&fstat, kFstat);
    return fails("fstat") ? -1 : passed(file, status);
}

int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept
{
    static const auto passed = real(&fstatat, kFstatat);
    return fails("fstatat") ? -1 : passed(folder, path, status, flags);
}

int flock(int file, int operation) noexcept
{
    static const auto passed = real(&flock, "flock");
    return fails("flock") ? -1 : passed(file, operation);
}

ssize_t read(int file, void* bytes, size_t count)
{
    static const auto passed = real(&read, "read");
    return fails("read") ? -1 : passed(file, bytes, count);
}

ssize_t write(int file, const void* bytes, size_t count)
{
    static const auto passed = real(&write, "write");
    return fails("write") ? -1 : passed(file, bytes, std::min(count, hooks::s_writeLimit));
}

int fsync(int file)
{
    static const auto passed = real(&fsync, "fsync");
    return fails("fsync") ? -1 : passed(file);
}

int fchown(int file, uid_t owner, gid_t group) noexcept
{
    static const auto passed = real(&fchown, "fchown");
    return fails("fchown") ? -1 : passed(file, owner, group);
}

ssize_t readlinkat(int folder, const char* path, char* target, size_t size) noexcept
{
    static const auto passed = real(&readlinkat, "readlinkat");
    return fails("readlinkat") ? -1 : passed(folder, path, target, size);
}

int fchmod(int file, mode_t mode) noexcept
{
    static const auto passed = real(&fchmod, "fchmod");
    return fails("fchmod") ? -1 : passed(file, mode);
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept
{
    static const auto passed = real(&renameat, "renameat");
    return fails("renameat") ? -1 : passed(fromFolder, from, toFolder, to);
}

int unlinkat(int folder, const char* path, int flags) noexcept
{
    static const auto passed = real(&unlinkat, "unlinkat");
    return fails("unlinkat") ? -1 : passed(folder, path, flags);
}

int close(int file)
{
    static const auto passed = real(&close, "close");
    return fails("close") ? -1 : passed(file);
}

int sigemptyset(sigset_t* set) noexcept
{
    static const auto passed = real(&sigemptyset, "sigemptyset");
    ++hooks::s_emptiedSets;
    return passed(set);
}

int posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const arguments[], char* const environment[])
{
    static const auto passed = real(&posix_spawn, "posix_spawn");
    if (hooks::s_onSpawn)
        hooks::s_onSpawn(*attributes);
    return passed(child, path, actions, attributes, arguments, environment);
}

} // extern "C"

#include "libc_hooks.h"

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <dlfcn.h>
#include <fcntl.h>
#include <mqueue.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int64_t kNsPerSecond = 1'000'000'000;
constexpr time_t kDay = 86400;

std::atomic<unsigned> s_realtimeLooks{0};

// The system calls that know the time as this program does.
#ifdef SYS_ppoll_time64 // a 32-bit machine
constexpr long kPpoll = SYS_ppoll_time64;
constexpr long kClockGettime = SYS_clock_gettime64;
#else
constexpr long kPpoll = SYS_ppoll;
constexpr long kClockGettime = SYS_clock_gettime;
#endif

// Whether the call is to fail.
bool fails(const char* call)
{
    if (!hooks::s_onCall)
        return false;
    const int before = errno; // which a call that succeeds leaves alone
    const int error = hooks::s_onCall(call);
    errno = error != 0 ? error : before;
    return error != 0;
}

// libc's own function behind the hook.
template <class Function>
Function* real(Function*, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

#if __SIZEOF_POINTER__ == 4 // 64-bit times and file sizes
constexpr char kFstat[] = "__fstat64_time64";
constexpr char kOpenat[] = "openat64";
#else
constexpr char kFstat[] = "fstat";
constexpr char kOpenat[] = "openat";
#endif

} // namespace

void hooks::reset()
{
    s_onCall = nullptr;
    s_openError = 0;
    s_waits = 0;
    s_onWait = nullptr;
    s_afterDup3 = nullptr;
    s_frozen = false;
    s_passedNs = 0;
    s_realtimeSteps = false;
}

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

ssize_t readlinkat(int folder, const char* path, char* target, size_t size) noexcept
{
    static const auto passed = real(&readlinkat, "readlinkat");
    return fails("readlinkat") ? -1 : passed(folder, path, target, size);
}

mqd_t mq_open(const char* name, int flags, ...)
{
    if (hooks::s_openError != 0) {
        errno = hooks::s_openError;
        return -1;
    }
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    mq_attr* const geometry = (flags & O_CREAT) != 0 ? va_arg(arguments, mq_attr*) : nullptr;
    va_end(arguments);
    return static_cast<mqd_t>(syscall(SYS_mq_open, name + 1, flags, mode, geometry));
}

int ppoll(pollfd* queues, nfds_t count, const timespec* time, const sigset_t* mask)
{
    hooks::s_waits++;
    if (fails("ppoll"))
        return -1;
    if (count != 1) { // nobody waits at more than one queue
        errno = EINVAL;
        return -1;
    }
    const int64_t given = time != nullptr ? time->tv_sec * kNsPerSecond + time->tv_nsec : INT64_MAX;
    const hooks::Wait wait = hooks::s_onWait ? hooks::s_onWait(given) : hooks::Wait::Real;
    switch (wait) {
    case hooks::Wait::Over:
        return 0;
    case hooks::Wait::Interrupt:
        errno = EINTR;
        return -1;
    case hooks::Wait::Real:
    case hooks::Wait::Event:
        break;
    }
    constexpr size_t kMaskSize = 8;
    const bool timed = time != nullptr && wait == hooks::Wait::Real;
    timespec rest = timed ? *time : timespec{}; // the kernel writes into it
    return static_cast<int>(syscall(kPpoll, queues, count, timed ? &rest : nullptr, mask, kMaskSize));
}

int mq_getattr(mqd_t queue, mq_attr* attributes) noexcept
{
    static const auto passed = real(&mq_getattr, "mq_getattr");
    return fails("mq_getattr") ? -1 : passed(queue, attributes);
}

int fstat(int file, struct stat* status) noexcept
{
    static const auto passed = real(&fstat, kFstat);
    return fails("fstat") ? -1 : passed(file, status);
}

int mq_send(mqd_t queue, const char* message, size_t length, unsigned priority)
{
    static const auto passed = real(&mq_send, "mq_send");
    return fails("mq_send") ? -1 : passed(queue, message, length, priority);
}

ssize_t mq_receive(mqd_t queue, char* message, size_t length, unsigned* priority)
{
    static const auto passed = real(&mq_receive, "mq_receive");
    return fails("mq_receive") ? -1 : passed(queue, message, length, priority);
}

int dup3(int from, int to, int flags)
{
    const int result = static_cast<int>(syscall(SYS_dup3, from, to, flags));
    const int error = errno;
    if (hooks::s_afterDup3)
        hooks::s_afterDup3();
    errno = error;
    return result;
}

int clock_gettime(clockid_t clock, timespec* time)
{
    const int result = static_cast<int>(syscall(kClockGettime, clock, time));
    if (clock == CLOCK_MONOTONIC && hooks::s_frozen) {
        time->tv_sec = static_cast<time_t>(hooks::s_passedNs / kNsPerSecond);
        time->tv_nsec = static_cast<long>(hooks::s_passedNs % kNsPerSecond);
    }
    if (clock == CLOCK_REALTIME && hooks::s_realtimeSteps)
        time->tv_sec += s_realtimeLooks++ % 2 == 0 ? kDay : -kDay;
    return result;
}

} // extern "C"

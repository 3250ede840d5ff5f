#include "common/interrupt.h"

#include "common/output.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tool {

namespace {

std::atomic<int> s_signal = 0;
static_assert(std::atomic<int>::is_always_lock_free, "set in a signal handler");
int s_wakeUp = -1; // becomes readable, and stays so, with the first signal
const char* s_notice = nullptr;
std::atomic<bool> s_held = false;
std::atomic<int> s_second = 0; // the signal that came while it was held

void onSignal(int signal)
{
    const int savedErrno = errno;
    int none = 0;
    if (s_signal.compare_exchange_strong(none, signal)) {
        const uint64_t one = 1;
        static_cast<void>(!write(s_wakeUp, &one, sizeof one));
        if (s_notice)
            static_cast<void>(!write(STDERR_FILENO, s_notice, std::strlen(s_notice)));
    } else if (s_held) {
        // That the terminal went away is often told twice: by the kernel, and by who started the program.
        if (signal != SIGHUP)
            s_second = signal;
    } else {
        std::signal(signal, SIG_DFL);
        std::raise(signal); // delivered when this handler returns
    }
    errno = savedErrno;
}

} // namespace

void catchInterruption(const char* notice)
{
    s_notice = isatty(STDERR_FILENO) == 1 ? notice : nullptr;
    if (s_wakeUp < 0)
        s_wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction old {};
        sigaction(signal, nullptr, &old);
        if (old.sa_handler == SIG_IGN)
            continue;
        struct sigaction action {};
        action.sa_handler = onSignal;
        sigaction(signal, &action, nullptr);
    }
}

void holdSecondSignal()
{
    s_held = true;
}

void endAtOnce()
{
    for (const int signal : {SIGINT, SIGTERM}) {
        struct sigaction old {};
        sigaction(signal, nullptr, &old);
        if (old.sa_handler == onSignal)
            std::signal(signal, SIG_DFL);
    }
    if (s_second != 0)
        std::raise(s_second);
}

int interruption()
{
    return s_signal;
}

void waitFor(std::chrono::milliseconds time, int fd, int other)
{
    // poll() passes over negative descriptors.
    std::array<pollfd, 4> waits{
        {{s_wakeUp, POLLIN, 0}, {fd, POLLIN, 0}, {other, POLLIN, 0}, {STDOUT_FILENO, 0, 0}}};
    poll(waits.data(), waits.size(), static_cast<int>(std::max<int64_t>(time.count(), 0)));
    if (waits[3].revents & POLLERR)
        throw BrokenPipe();
}

} // namespace tool

#include "support/kernel_calls.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string_view>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vx63test {
namespace {

constexpr int kRefused = 77;

// One call of libc can be one of several of the kernel's.
std::string nameOf(const __ptrace_syscall_info& call)
{
    switch (call.entry.nr) {
    case SYS_newfstatat:
        return (call.entry.args[3] & AT_EMPTY_PATH) != 0 ? "fstat" : "stat";
    case SYS_fstat:
        return "fstat";
    case SYS_openat:
        return "open";
    case SYS_write:
        return "write";
    case SYS_writev:
        return "writev";
    case SYS_close:
        return "close";
    case SYS_clock_gettime:
        return "clock_gettime";
    case SYS_getpid:
        return "getpid";
    case SYS_flock:
        return "flock";
    case SYS_ftruncate:
        return "ftruncate";
    case SYS_rt_sigprocmask:
        return "pthread_sigmask";
    case SYS_mq_timedsend:
        return "mq_send";
    case SYS_mq_timedreceive:
        return "mq_receive";
    case SYS_ppoll:
        return "ppoll";
    default:
        return "system call " + std::to_string(call.entry.nr);
    }
}

// The child stops once, for its parent to follow it; what it calls from then on is the work's.
[[noreturn]] void perform(const std::function<void()>& work)
{
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0 || kill(getpid(), SIGSTOP) != 0) {
        _exit(kRefused);
    }
    work();
    _exit(0);
}

} // namespace

std::optional<Calls> kernelCalls(const std::function<void()>& work,
                                 const std::function<void(const std::string& name)>& before)
{
    const pid_t child = fork();
    if (child == 0) {
        perform(work);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFSTOPPED(status)) {
        const char* const ci = getenv("CI");
        EXPECT_STRNE(ci != nullptr ? ci : "", "true") << "a process may not trace its child";
        return std::nullopt;
    }
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    Calls calls;
    while (ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) == 0 && waitpid(child, &status, 0) == child &&
           WIFSTOPPED(status)) {
        __ptrace_syscall_info call = {};
        const bool isCall = WSTOPSIG(status) == (SIGTRAP | 0x80) &&
                            ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof call, &call) > 0;
        if (!isCall) {
            ADD_FAILURE() << "the work was stopped: " << strsignal(WSTOPSIG(status));
            kill(child, SIGKILL);
        } else if (call.op == PTRACE_SYSCALL_INFO_ENTRY && call.entry.nr != SYS_exit_group) {
            const std::string name = nameOf(call);
            if (before) {
                before(name);
            }
            ++calls[name];
        }
    }
    EXPECT_TRUE(WIFEXITED(status)) << "the work came to no end";
    return calls;
}

} // namespace vx63test

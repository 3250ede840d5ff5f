#include "kernel.h"

#include "finding.h"
#include "same.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sanitizer/allocator_interface.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

extern "C" const char* __progname;

namespace responses {
namespace {

constexpr char kLogPath[] = "/var/log/libvx63.cpp.txt";
constexpr char kKeyLogPath[] = "/var/log/libvx63_key.txt";
constexpr int kLogFile = 70001;
constexpr int kKeyLogFile = 70002;
constexpr int64_t kSizeLimit = 0x200000;

// One statement of the log: its calls come in this order.
enum class Step { none, looked, opened, timed, written };
Step s_step = Step::none;
bool s_isKeyLog = false;
bool s_locked = false;
bool s_masked = false;

void step(Step from, Step to, const char* call)
{
    if (s_step != from)
        finding("%s at a wrong place of a log statement", call);
    s_step = to;
}

bool isDigit(char c)
{
    return '0' <= c && c <= '9';
}

// In whose name a line may stand.
bool isKnown(std::string_view function)
{
    static constexpr std::string_view kInner[] = {
        "vx63_sndRcvCommon",
        "vx63_startSingleMeasCommon",
        "vx63_startMultiMeasCommon",
        "vx63_deleteSetFileUserInner",
        "vx63_deleteSetFileLoggerInner",
        "vx63_getFileIdSetFlist",
        "vx63_readSetFile",
        "vx63_writeSetFile",
    };
    return same(function, s_kernel.function) ||
           std::any_of(std::begin(kInner), std::end(kInner),
                       [function](std::string_view inner) { return same(function, inner); });
}

bool tellsOfFailure(std::string_view message)
{
    static constexpr std::string_view kBegins[] = {
        "arg ",
        "lmsg",
        "cmd error",
        "ret error",
        "parameter error",
        "power supply",
        "buzzer ",
        "subcpu ",
        "PROC_ID_",
        "file delete error",
        "fileId is not",
        "vx63_writeSetFile() error",
        "vx63_getFileIdSetFlist() error",
    };
    if (startsWith(message, "lsys_system("))
        return message.ends_with(" error.");
    return std::any_of(std::begin(kBegins), std::end(kBegins),
                       [message](std::string_view begin) { return startsWith(message, begin); }) &&
           !message.ends_with("-> VX63_POWER_SUPPLY_OFF");
}

void keep(char (&to)[64], std::string_view message)
{
    const size_t length = std::min(message.size(), sizeof to - 1);
    memcpy(to, message.data(), length);
    to[length] = '\0';
}

// The whole of what one statement writes.
void takeLine(std::string_view line)
{
    static char begin[128];
    static const int beginLength =
        snprintf(begin, sizeof begin, "1234567890.000042 : %s : libvx63.cpp(", __progname);
    const auto wrong = [&line](const char* what) {
        finding("%s: %.*s", what, static_cast<int>(line.size()), line.data());
    };
    if (!line.ends_with('\n'))
        wrong("a line without an end");
    if (!startsWith(line, std::string_view(begin, static_cast<size_t>(beginLength))))
        wrong("a line with a wrong begin");
    std::string_view rest =
        line.substr(static_cast<size_t>(beginLength), line.size() - 1 - static_cast<size_t>(beginLength));
    size_t digits = 0;
    while (digits < rest.size() && isDigit(rest[digits]))
        ++digits;
    rest.remove_prefix(digits);
    if (digits == 0 || !startsWith(rest, ") "))
        wrong("a line without a number");
    rest.remove_prefix(2);
    const size_t end = rest.find("() : ");
    if (end == std::string_view::npos || !isKnown(rest.substr(0, end)))
        wrong("a line in a strange name");
    rest.remove_prefix(end + 5);
    if (!s_kernel.takesTexts)
        for (const char c : rest)
            if (c < ' ' || c > '~')
                wrong("a line with a strange byte");

    if (s_isKeyLog) {
        if (!startsWith(rest, "pKeyStat->stat["))
            wrong("a line that is none of the key log's");
        ++s_kernel.keyLines;
        return;
    }
    if (s_kernel.lines++ == 0)
        keep(s_kernel.first, rest);
    keep(s_kernel.last, rest);
    s_kernel.errors += tellsOfFailure(rest);
}

ssize_t writeLine(int fd, std::string_view line)
{
    step(Step::timed, Step::written, "write");
    if (fd != (s_isKeyLog ? kKeyLogFile : kLogFile))
        finding("a line goes to another file");
    takeLine(line);
    if (s_kernel.log == Kernel::kDiskFull) {
        errno = ENOSPC;
        return line.size() % 2 == 0 ? -1 : static_cast<ssize_t>(line.size() / 2);
    }
    return static_cast<ssize_t>(line.size());
}

int fail(int error)
{
    errno = error;
    return -1;
}

void fill(struct stat& status)
{
    status = {};
    status.st_mode = s_kernel.log == Kernel::kFolder ? S_IFDIR : S_IFREG;
    status.st_size = s_kernel.log == Kernel::kFull ? kSizeLimit + 1 : kSizeLimit;
}

// What the fuzzer does at a signal is not the operation's.
template <int kSignal>
void takeOver()
{
    static struct sigaction fuzzers;
    sigaction(kSignal, nullptr, &fuzzers);
    if ((fuzzers.sa_flags & SA_SIGINFO) == 0)
        return;
    struct sigaction ours = fuzzers;
    ours.sa_sigaction = [](int signal, siginfo_t* about, void* context) {
        const bool inside = s_inside;
        s_inside = false;
        fuzzers.sa_sigaction(signal, about, context);
        s_inside = inside;
    };
    sigaction(kSignal, &ours, nullptr);
}

} // namespace

void watchOperations()
{
    // The fuzzer's clock, who ends it, and a finding come between.
    takeOver<SIGALRM>();
    takeOver<SIGINT>();
    takeOver<SIGTERM>();
    takeOver<SIGABRT>();
    takeOver<SIGSEGV>();
    takeOver<SIGBUS>();
    takeOver<SIGILL>();
    takeOver<SIGFPE>();
    __sanitizer_install_malloc_and_free_hooks([](const volatile void*, size_t) { s_heapCalls += s_inside; },
                                              [](const volatile void*) { s_heapCalls += s_inside; });
}

bool isLogAtRest()
{
    return s_step == Step::none;
}

void prepareKernel(Input& input, std::string_view function, bool takesTexts)
{
    // Mostly the log is as it should be.
    const uint8_t choice = input.byte();
    s_kernel = {};
    s_kernel.log = choice < 192 ? Kernel::kFile : static_cast<Kernel::Log>(choice % 6);
    s_kernel.lockedFor = s_kernel.log == Kernel::kFull ? input.byte() : 0;
    s_kernel.removeError = input.byte() % 4 == 3 ? 1 + input.byte() % 40 : 0;
    s_kernel.function = function;
    s_kernel.takesTexts = takesTexts;
    s_step = Step::none;
    s_locked = s_masked = false;
}

} // namespace responses

using namespace responses;

// The address sanitizer calls it before its report.
extern "C" void __asan_on_error()
{
    s_inside = false;
}

extern "C" {

int stat(const char* path, struct stat* status) noexcept
{
    if (!s_inside)
        return fstatat(AT_FDCWD, path, status, 0);
    step(Step::none, Step::looked, "stat");
    s_isKeyLog = same(path, kKeyLogPath);
    if (!s_isKeyLog && !same(path, kLogPath))
        finding("looks for %s", path);
    ++s_kernel.statements;
    if (s_kernel.log == Kernel::kMissing)
        return fail(ENOENT);
    fill(*status);
    if (s_kernel.log == Kernel::kFolder)
        s_step = Step::none;
    return 0;
}

int fstat(int fd, struct stat* status) noexcept
{
    if (!s_inside)
        return fstatat(fd, "", status, AT_EMPTY_PATH);
    if (s_kernel.log != Kernel::kFull)
        finding("fstat of a log that is not full");
    fill(*status);
    return 0;
}

int open(const char* path, int flags, ...)
{
    if (!s_inside) {
        va_list arguments;
        va_start(arguments, flags);
        const unsigned mode = va_arg(arguments, unsigned);
        va_end(arguments);
        return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
    }
    step(Step::looked, Step::opened, "open");
    if (!same(path, s_isKeyLog ? kKeyLogPath : kLogPath))
        finding("opens %s", path);
    if ((flags & O_ACCMODE) != O_WRONLY || (flags & O_APPEND) == 0 || (flags & O_TRUNC) != 0)
        finding("opens the log with the flags %#x", static_cast<unsigned>(flags));
    if (s_kernel.log == Kernel::kRefused) {
        s_step = Step::none;
        return fail(EACCES);
    }
    return s_isKeyLog ? kKeyLogFile : kLogFile;
}

int clock_gettime(clockid_t clock, struct timespec* time) noexcept
{
    if (!s_inside)
        return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    step(Step::opened, Step::timed, "clock_gettime");
    if (s_locked || s_masked)
        finding("the lock of the log stays");
    *time = {.tv_sec = 1234567890, .tv_nsec = 42999};
    return 0;
}

ssize_t write(int fd, const void* data, size_t size)
{
    if (!s_inside)
        return syscall(SYS_write, fd, data, size);
    return writeLine(fd, {static_cast<const char*>(data), size});
}

ssize_t writev(int fd, const iovec* pieces, int count)
{
    if (!s_inside)
        return syscall(SYS_writev, fd, pieces, count);
    static char line[1 << 16];
    size_t length = 0;
    for (int i = 0; i < count; ++i) {
        if (pieces[i].iov_len > sizeof line - length)
            finding("a line of more than 64 KiB");
        memcpy(line + length, pieces[i].iov_base, pieces[i].iov_len);
        length += pieces[i].iov_len;
    }
    return writeLine(fd, {line, length});
}

int close(int fd)
{
    if (!s_inside)
        return static_cast<int>(syscall(SYS_close, fd));
    step(Step::written, Step::none, "close");
    return 0;
}

pid_t getpid() noexcept
{
    return s_inside ? 4711 : static_cast<pid_t>(syscall(SYS_getpid));
}

int pthread_sigmask(int how, const sigset_t* set, sigset_t* old) noexcept
{
    if (!s_inside)
        return sigprocmask(how, set, old);
    s_masked = how != SIG_SETMASK;
    return 0;
}

int flock(int fd, int operation) noexcept
{
    if (!s_inside)
        return static_cast<int>(syscall(SYS_flock, fd, operation));
    if (operation == LOCK_UN) {
        s_locked = false;
        return 0;
    }
    if (s_step != Step::opened || s_kernel.log != Kernel::kFull)
        finding("locks a log that is not full");
    if ((operation & LOCK_NB) == 0)
        finding("waits for a lock");
    if (s_kernel.lockedFor > 0) {
        --s_kernel.lockedFor;
        return fail(EWOULDBLOCK);
    }
    s_locked = true;
    return 0;
}

int nanosleep(const struct timespec* pause, struct timespec* rest)
{
    if (!s_inside)
        return static_cast<int>(syscall(SYS_nanosleep, pause, rest));
    if (s_kernel.log != Kernel::kFull || pause->tv_sec != 0 || pause->tv_nsec > 1'000'000)
        finding("sleeps");
    return 0;
}

int ftruncate(int fd, off_t length) noexcept
{
    if (!s_inside)
        return static_cast<int>(syscall(SYS_ftruncate, fd, length));
    if (s_kernel.log != Kernel::kFull || length != 0)
        finding("cuts a log that is not full");
    s_kernel.log = Kernel::kFile;
    return 0;
}

int remove(const char* path) noexcept
{
    if (!s_inside)
        return unlinkat(AT_FDCWD, path, 0) == 0 || unlinkat(AT_FDCWD, path, AT_REMOVEDIR) == 0 ? 0 : -1;
    ++s_kernel.removals;
    snprintf(s_kernel.removed, sizeof s_kernel.removed, "%s", path);
    if (s_kernel.removeError != 0)
        return fail(s_kernel.removeError);
    s_kernel.unsynced = true;
    return 0;
}

void sync() noexcept
{
    if (!s_inside) {
        syscall(SYS_sync);
        return;
    }
    s_kernel.unsynced = false;
}

} // extern "C"

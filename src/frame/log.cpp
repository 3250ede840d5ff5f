#include "frame/log.h"

#include "frame/line.h"
#include "libvx63.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

extern "C" {

extern const char* __progname;

// Holds its text from the start: whoever reads it, at any time, finds the whole path.
alignas(uintptr_t) constinit char g_cLibTestLogFilePath[256] = "/var/log/libvx63.cpp.txt";
constinit int32_t g_lLibLogLevel = 0;
constinit __thread char gLibDumpLog[50000] = {};
constinit __thread char gLibDumpTestLog[50000] = {};
}

namespace vx63 {
namespace {

// Several characters of a path at once.
using Word [[gnu::may_alias]] = uintptr_t;

constexpr char kPath[] = "/var/log/libvx63.cpp.txt";
constexpr char kKeyPath[] = "/var/log/libvx63_key.txt";
constexpr off_t kSizeLimit = 0x200000;

static_assert(sizeof(time_t) == 8, "time stamps and files go beyond 2038");

// Other threads may be reading the buffer, so that a part is stored only where it is not yet right: what
// holds the path keeps holding it, without a moment in which it does not.
void refreshPath()
{
    constexpr size_t kLength = sizeof kPath - 1;
    static_assert(kLength % sizeof(Word) == 0);
    for (size_t i = 0; i < kLength; i += sizeof(Word)) {
        Word right;
        memcpy(&right, kPath + i, sizeof right);
        Word* const word = reinterpret_cast<Word*>(g_cLibTestLogFilePath + i);
        if (__atomic_load_n(word, __ATOMIC_RELAXED) != right) {
            __atomic_store_n(word, right, __ATOMIC_RELAXED);
        }
    }
    char* const end = g_cLibTestLogFilePath + kLength;
    if (__atomic_load_n(end, __ATOMIC_RELAXED) != '\0') {
        __atomic_store_n(end, '\0', __ATOMIC_RELAXED);
    }
}

// Empties a log that has grown past the limit. Of several that find it so, one does: the others' lines, which
// follow, stay. Who holds the lock for long, whoever it is, holds up a call for a tenth of a second at most.
// No signal handler comes between: it would log, and wait for itself.
[[gnu::noinline]] void startAnew(int fd)
{
    sigset_t all;
    sigset_t callers;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &callers);
    for (int tries = 0; flock(fd, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK && tries < 100; ++tries) {
        const timespec pause = {.tv_sec = 0, .tv_nsec = 1'000'000};
        nanosleep(&pause, nullptr);
    }
    struct stat status;
    if (fstat(fd, &status) == 0 && status.st_size > kSizeLimit) {
        [[maybe_unused]] const int result = ftruncate(fd, 0);
    }
    flock(fd, LOCK_UN);
    pthread_sigmask(SIG_SETMASK, &callers, nullptr);
}

// Opens a log to add one line to it, emptied if it has grown past the limit. -1: leave the line out.
[[gnu::noinline]] int openLog(const char* path)
{
    struct stat status;
    const bool exists = stat(path, &status) == 0;
    if (exists && !S_ISREG(status.st_mode)) {
        return -1;
    }
    // Neither creating nor opening truncates: of two threads that do so at once, the second would wipe out
    // the line of the first. Nor does it wait, whatever takes the file's place meanwhile.
    const int fd = open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, 0666);
    if (fd >= 0 && exists && status.st_size > kSizeLimit) {
        startAnew(fd);
    }
    return fd;
}

// Apart from the opening, which takes stack of its own.
[[gnu::noinline, gnu::format(printf, 3, 0)]] void writeLine(int fd, Site at, const char* format,
                                                            va_list arguments)
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    Line line;
    line.addHead(now, __progname, at.function, at.line);
    line.addMessage(format, arguments);
    line.writeTo(fd);
}

// One log statement. Whichever file the line goes to, g_cLibTestLogFilePath names the main log.
[[gnu::format(printf, 3, 0)]] void addLine(const char* path, Site at, const char* format, va_list arguments)
{
    const int callersErrno = errno;
    refreshPath();
    const int fd = openLog(path);
    if (fd >= 0) {
        writeLine(fd, at, format, arguments);
        close(fd);
    }
    errno = callersErrno;
}

} // namespace

void logLine(Site at, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    addLine(kPath, at, format, arguments);
    va_end(arguments);
}

void logKeyLine(Site at, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    addLine(kKeyPath, at, format, arguments);
    va_end(arguments);
}

void logDump(const char* label, const uint8_t* bytes, uint32_t count, Caller caller)
{
    constexpr uint32_t kBytesPerLine = 16;
    char* const buffer = gLibDumpLog;

    snprintf(buffer, sizeof gLibDumpLog, "%s:%d byte", label, static_cast<int>(count));
    logLine({caller}, "%s", buffer);

    char* at = buffer;
    for (uint32_t i = 0; i < count; ++i) {
        if (i % kBytesPerLine == 0) {
            at = putHex(buffer, i, 4);
            *at++ = ' ';
            *at++ = ':';
        }
        *at++ = ' ';
        *at++ = kUpperDigits[bytes[i] >> 4];
        *at++ = kUpperDigits[bytes[i] & 0xF];
        if (i % kBytesPerLine == kBytesPerLine - 1) {
            *at = '\0';
            logLine({caller}, "%s", buffer);
        }
    }
    if (count % kBytesPerLine != 0) {
        *at = '\0';
        logLine({caller}, "%s", buffer);
    }
}

} // namespace vx63

#include "frame/log.h"

#include "libvx63.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

extern "C" {

extern const char* __progname;

// Holds its text from the start: whoever reads it, at any time, finds the whole path.
constinit char g_cLibTestLogFilePath[256] = "/var/log/libvx63.cpp.txt";
constinit int32_t g_lLibLogLevel = 0;
constinit __thread char gLibDumpLog[50000] = {};
constinit __thread char gLibDumpTestLog[50000] = {};
}

namespace vx63 {
namespace {

constexpr char kSourceName[] = "libvx63.cpp";
constexpr char kPath[] = "/var/log/libvx63.cpp.txt";
constexpr char kKeyPath[] = "/var/log/libvx63_key.txt";
constexpr off_t kSizeLimit = 0x200000;

// Longer than any line but one with a set name out of all bounds.
constexpr size_t kUsualLine = 4096;

// Other threads may be reading the buffer, so that a byte is stored only where it is not yet right: what
// holds the path keeps holding it, without a moment in which it does not.
void refreshPath()
{
    for (size_t i = 0; i < sizeof kPath; ++i) {
        char* const byte = &g_cLibTestLogFilePath[i];
        if (__atomic_load_n(byte, __ATOMIC_RELAXED) != kPath[i]) {
            __atomic_store_n(byte, kPath[i], __ATOMIC_RELAXED);
        }
    }
}

// Opens a log to add one line to it, emptied if it has grown past the limit. -1: leave the line out.
int openLog(const char* path)
{
    // Creating a missing file does not truncate it: of two threads that both find it missing, the second
    // would wipe out the line of the first.
    int flags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC;
    struct stat status;
    if (stat(path, &status) == 0) {
        if (!S_ISREG(status.st_mode)) {
            return -1;
        }
        if (status.st_size > kSizeLimit) {
            flags |= O_TRUNC;
        }
    }
    return open(path, flags, 0666);
}

// Formats the line into the buffer as far as it fits; returns its whole length, the newline included,
// or 0 if it cannot be formatted.
[[gnu::format(printf, 5, 0)]] size_t formatLine(char* buffer, size_t size, const timespec& now,
                                                const Site& at, const char* format, va_list arguments)
{
    const int head =
        snprintf(buffer, size, "%ld.%06ld : %s : %s(%d) %s() : ", static_cast<long>(now.tv_sec),
                 static_cast<long>(now.tv_nsec / 1000), __progname, kSourceName, at.line, at.function);
    if (head < 0) {
        return 0;
    }
    const size_t used = static_cast<size_t>(head) < size ? static_cast<size_t>(head) : size;
    const int message = vsnprintf(buffer + used, size - used, format, arguments);
    if (message < 0) {
        return 0;
    }
    const size_t length = static_cast<size_t>(head) + static_cast<size_t>(message) + 1;
    if (length <= size) {
        buffer[length - 1] = '\n';
    }
    return length;
}

void writeLine(int fd, const char* line, size_t length)
{
    // One write, so that no other line can come between; what a full disk cuts off is lost.
    [[maybe_unused]] const ssize_t written = write(fd, line, length);
}

// One log statement. Whichever file the line goes to, g_cLibTestLogFilePath names the main log.
[[gnu::format(printf, 3, 0)]] void addLine(const char* path, const Site& at, const char* format,
                                           va_list arguments)
{
    const int callersErrno = errno;
    refreshPath();
    const int fd = openLog(path);
    if (fd >= 0) {
        timespec now = {};
        clock_gettime(CLOCK_REALTIME, &now);

        va_list again;
        va_copy(again, arguments);
        char usual[kUsualLine];
        const size_t length = formatLine(usual, sizeof usual, now, at, format, arguments);
        if (length <= sizeof usual) {
            writeLine(fd, usual, length);
        } else {
            // Room for the terminator that vsnprintf adds where the newline goes.
            void* const room =
                mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
            if (room != MAP_FAILED) {
                char* const line = static_cast<char*>(room);
                // No longer than the room, should a text have grown between the two.
                writeLine(fd, line, std::min(length, formatLine(line, length, now, at, format, again)));
                munmap(room, length);
            }
        }
        va_end(again);
        close(fd);
    }
    errno = callersErrno;
}

} // namespace

void logLine(const Site& at, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    addLine(kPath, at, format, arguments);
    va_end(arguments);
}

void logKeyLine(const Site& at, const char* format, ...)
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
    constexpr size_t size = sizeof gLibDumpLog;

    snprintf(buffer, size, "%s:%d byte", label, static_cast<int>(count));
    logLine({caller}, "%s", buffer);

    size_t used = 0;
    for (uint32_t i = 0; i < count; ++i) {
        if (i % kBytesPerLine == 0) {
            used = static_cast<size_t>(snprintf(buffer, size, "%04X :", i));
        }
        used += static_cast<size_t>(snprintf(buffer + used, size - used, " %02X", bytes[i]));
        if (i % kBytesPerLine == kBytesPerLine - 1) {
            logLine({caller}, "%s", buffer);
        }
    }
    if (count % kBytesPerLine != 0) {
        logLine({caller}, "%s", buffer);
    }
}

} // namespace vx63

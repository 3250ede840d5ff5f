#include "common/output.h"

#include "cli/columns.h"
#include "common/failure.h"
#include "common/terminal.h"
#include "common/text.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <poll.h>
#include <string>
#include <unistd.h>
#include <utility>

namespace tool {

namespace {

std::mutex s_asideMutex;
std::function<void(const std::string&)> s_aside; // empty: to stderr

bool isAside()
{
    const std::lock_guard lock(s_asideMutex);
    return s_aside != nullptr;
}

// Writes everything or returns the error.
int writeAll(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(fd, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<size_t>(written));
        } else if (errno == EAGAIN) {
            // Another program made the shared terminal or pipe non-blocking.
            pollfd ready{fd, POLLOUT, 0};
            poll(&ready, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

[[noreturn]] void failOutput(int error)
{
    if (error == EPIPE)
        throw BrokenPipe();
    throw Failure(kExitOutput, "cannot write to standard output", std::strerror(error),
                  error == ENOSPC ? "make room on the disk" : "write to another file");
}

} // namespace

void printError(std::string_view text)
{
    writeAll(STDERR_FILENO, text);
}

ErrorsAside::ErrorsAside(std::function<void(const std::string&)> take)
{
    const std::lock_guard lock(s_asideMutex);
    s_aside = std::move(take);
}

ErrorsAside::~ErrorsAside()
{
    const std::lock_guard lock(s_asideMutex);
    s_aside = nullptr;
}

void complain(const std::string& text)
{
    {
        const std::lock_guard lock(s_asideMutex);
        if (s_aside)
            return s_aside(printable(text));
    }
    printError(tinted(Tint::bad, "vx63:", STDERR_FILENO) + " " + printable(text) + "\n");
}

void prepareOutput()
{
    std::signal(SIGPIPE, SIG_IGN);
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd)
        if (fcntl(fd, F_GETFD) < 0)
            // The lowest free descriptor is fd itself. Its mode is the wrong way round on purpose: whoever
            // uses it is told.
            static_cast<void>(open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY));
}

void print(std::string_view text)
{
    if (const int error = writeAll(STDOUT_FILENO, text))
        failOutput(error);
}

void closeOutput()
{
    if (close(STDOUT_FILENO) != 0 && errno != EBADF)
        failOutput(errno);
}

Progress::Progress(std::string before)
    : m_terminal(isatty(STDERR_FILENO) == 1 && !isAside()), m_before(std::move(before))
{}

Progress::~Progress()
{
    if (m_width > 0)
        writeAll(STDERR_FILENO, "\r" + std::string(m_width, ' ') + "\r");
}

void Progress::show(std::string_view text)
{
    if (!m_terminal)
        return;
    // The last column stays free: some terminals go on to the next line when it is written.
    const std::string whole = m_before + std::string(text);
    text = cut(whole, cli::columnsOf(STDERR_FILENO).value_or(80) - 1);
    // Blanks instead of an escape sequence: every terminal knows them.
    const size_t width = widthOf(text);
    writeAll(STDERR_FILENO,
             "\r" + std::string(text) + std::string(m_width > width ? m_width - width : 0, ' '));
    m_width = width;
}

} // namespace tool

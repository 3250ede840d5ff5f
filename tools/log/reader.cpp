#include "log/reader.h"

#include "common/failure.h"
#include "common/interrupt.h"
#include "common/text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tool {

namespace {

constexpr size_t kHeadSize = 64; // holds the time stamp of the first line

} // namespace

void LineSplitter::feed(std::string_view bytes, const LineSink& sink)
{
    while (!bytes.empty()) {
        const std::string_view piece = bytes.substr(0, kMaxLine - m_partial.size());
        const size_t newline = piece.find('\n');
        m_partial += piece.substr(0, newline);
        if (newline != std::string_view::npos || m_partial.size() == kMaxLine) {
            sink(m_partial);
            m_partial.clear();
        }
        bytes.remove_prefix(newline != std::string_view::npos ? newline + 1 : piece.size());
    }
}

void LineSplitter::finish(const LineSink& sink)
{
    if (!m_partial.empty())
        sink(m_partial);
    m_partial.clear();
}

LogReader::LogReader(std::string path) : m_path(std::move(path)) {}

LogReader::~LogReader()
{
    close();
}

void LogReader::close()
{
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

void LogReader::fail(int error) const
{
    throw Failure(kExitNoInput, "cannot read " + m_path, std::strerror(error),
                  error == ENOENT ? "name another FILE; the library writes its log with the first call"
                                  : "name another FILE, or check its permissions");
}

bool LogReader::open()
{
    close();
    m_fd = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
    if (m_fd < 0) {
        if (errno == ENOENT)
            return false;
        fail(errno);
    }
    struct stat status {};
    m_regular = fstat(m_fd, &status) == 0 && S_ISREG(status.st_mode);
    m_position = 0;
    m_head.clear();
    return true;
}

bool LogReader::isReplaced() const
{
    struct stat opened {
    }, atPath{};
    // As long as the path is empty the old file may still be written.
    return m_regular && fstat(m_fd, &opened) == 0 && stat(m_path.c_str(), &atPath) == 0 &&
           (opened.st_dev != atPath.st_dev || opened.st_ino != atPath.st_ino);
}

bool LogReader::isRestarted() const
{
    struct stat opened {};
    if (!m_regular || fstat(m_fd, &opened) != 0)
        return false;
    if (opened.st_size < m_position)
        return true;
    std::array<char, kHeadSize> head{};
    const ssize_t size = pread(m_fd, head.data(), m_head.size(), 0);
    return size >= 0 && std::string_view(head.data(), static_cast<size_t>(size)) != m_head;
}

void LogReader::drain(const LineSink& sink)
{
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t size = ::read(m_fd, buffer.data(), buffer.size());
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0)
            fail(errno);
        if (size == 0)
            return;
        const std::string_view bytes(buffer.data(), static_cast<size_t>(size));
        m_head += bytes.substr(0, kHeadSize - m_head.size());
        m_position += size;
        m_lines.feed(bytes, sink);
    }
}

void LogReader::read(const LineSink& sink)
{
    if (m_fd < 0 && !open())
        return;
    if (isRestarted()) {
        m_lines.finish(sink);
        lseek(m_fd, 0, SEEK_SET);
        m_position = 0;
        m_head.clear();
    }
    const bool replaced = isReplaced(); // before the last look at the old file, not after it
    drain(sink);
    if (replaced) {
        m_lines.finish(sink);
        if (open())
            drain(sink);
    }
}

FolderWatch::FolderWatch(const std::string& path) : m_fd(inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
{
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    if (m_fd >= 0 && inotify_add_watch(m_fd, folder.empty() ? "." : folder.c_str(),
                                       IN_MODIFY | IN_CREATE | IN_MOVED_TO | IN_DELETE) < 0) {
        ::close(m_fd);
        m_fd = -1;
    }
}

FolderWatch::~FolderWatch()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

void FolderWatch::wait() const
{
    using namespace std::chrono_literals;
    // Now and then without an event too: a link may lead to another folder, a network file system tells
    // nothing of what others write.
    waitFor(m_fd >= 0 ? 1000ms : 200ms, m_fd);
    if (m_fd < 0)
        return;
    alignas(inotify_event) std::array<char, 4096> events;
    while (::read(m_fd, events.data(), events.size()) > 0)
        ;
}

} // namespace tool

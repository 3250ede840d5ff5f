#include "survey/results_file.h"

#include "common/failure.h"
#include "common/file.h"
#include "survey/results.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool {

ResultsFile::ResultsFile(const std::string& folder)
    : m_path((std::filesystem::path(folder) / kResultsFile).string())
{
    makeFolder(folder);
    m_fd = open(m_path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    if (m_fd < 0)
        fail(errno);
    try {
        if (flock(m_fd, LOCK_EX | LOCK_NB) != 0) {
            if (errno == EWOULDBLOCK)
                throw Failure(kExitBusy, "cannot write to " + m_path, "another vx63 survey writes to it",
                              "wait until it ends, or name another folder with --out");
            fail(errno);
        }
        flushNames(folder);
        cutTornLine();
    } catch (const Failure&) {
        close(m_fd);
        throw;
    }
}

ResultsFile::~ResultsFile()
{
    close(m_fd);
}

void ResultsFile::fail(int error) const
{
    throw Failure(kExitOutput, "cannot write to " + m_path, std::strerror(error),
                  error == ENOSPC ? "make room on the disk" : "name another folder with --out");
}

void ResultsFile::cutTornLine()
{
    struct stat status {};
    if (fstat(m_fd, &status) != 0)
        fail(errno);
    char piece[4096];
    for (off_t end = status.st_size; end > 0;) {
        const off_t from = std::max<off_t>(0, end - static_cast<off_t>(sizeof piece));
        const ssize_t got = pread(m_fd, piece, static_cast<size_t>(end - from), from);
        if (got != end - from)
            fail(got < 0 ? errno : EIO);
        const size_t last = std::string_view(piece, static_cast<size_t>(got)).rfind('\n');
        const off_t whole = last == std::string_view::npos ? from : from + static_cast<off_t>(last) + 1;
        if (last != std::string_view::npos || from == 0) {
            if (whole < status.st_size && ftruncate(m_fd, whole) != 0)
                fail(errno);
            return;
        }
        end = from;
    }
}

void ResultsFile::add(const std::string& line)
{
    const off_t before = lseek(m_fd, 0, SEEK_END);
    ssize_t written = -1;
    do
        written = write(m_fd, line.data(), line.size());
    while (written < 0 && errno == EINTR);
    int error = written < 0 ? errno : written < static_cast<ssize_t>(line.size()) ? ENOSPC : 0;
    if (error == 0 && fdatasync(m_fd) != 0)
        error = errno;
    if (error == 0)
        return;
    static_cast<void>(!ftruncate(m_fd, before)); // what stays of it is cut off by the next survey
    fail(error);
}

} // namespace tool

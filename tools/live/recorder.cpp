#include "live/recorder.h"

#include "common/failure.h"
#include "common/file.h"
#include "common/json.h"
#include "common/numbers.h"
#include "measure/reading.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool {

namespace {

constexpr size_t kMostHeader = 4096;

Json objectOf(const LiveReading& reading)
{
    Json object = readingJson(reading.reading);
    object.set("mer_db", reading.merDb ? Json(rounded(*reading.merDb, 1)) : Json());
    return object;
}

} // namespace

Recorder::Recorder(const std::string& path)
    : m_path(path), m_csv(path.ends_with(".csv")),
      m_fd(open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666))
{
    if (m_fd < 0)
        throw Failure(kExitOutput, "cannot record to " + path, std::strerror(errno),
                      "record to another file");
    try {
        const std::string header = m_csv ? objectOf({}).csvHeader() : "";
        struct stat status {};
        if (fstat(m_fd, &status) != 0 || !S_ISREG(status.st_mode)) {
            append(header);
            return;
        }
        const std::string begin =
            m_csv ? readWholeFile(path, kMostHeader, "cannot read " + path, "record to another file") : "";
        if (!begin.empty() && !begin.starts_with(header))
            throw Failure(kExitOutput, "cannot record to " + path, "its first line has other columns",
                          "record to another file");
        char last = '\n';
        const int read = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        static_cast<void>(!pread(read, &last, 1, status.st_size - 1));
        close(read);
        append((last == '\n' ? "" : "\n") + (status.st_size == 0 ? header : ""));
    } catch (...) {
        close(m_fd);
        throw;
    }
}

Recorder::~Recorder()
{
    close(m_fd);
}

void Recorder::add(const LiveReading& reading)
{
    const Json object = objectOf(reading);
    append(m_csv ? object.csvLine() : object.line());
    ++m_count;
}

void Recorder::append(const std::string& text)
{
    struct stat before {};
    fstat(m_fd, &before);
    for (size_t done = 0; done < text.size();) {
        const ssize_t written = write(m_fd, text.data() + done, text.size() - done);
        if (written >= 0) {
            done += static_cast<size_t>(written);
        } else if (errno != EINTR) {
            const int error = errno;
            if (done > 0)
                static_cast<void>(!ftruncate(m_fd, before.st_size)); // no half line
            throw Failure(kExitOutput, "cannot record to " + m_path, std::strerror(error),
                          error == ENOSPC ? "make room on the disk" : "record to another file");
        }
    }
}

} // namespace tool

#include "common/file.h"

#include "common/failure.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace tool {

namespace {

// The error that there was, or 0.
int writeTo(int fd, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(fd, bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<size_t>(written));
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

[[noreturn]] void failToWrite(int error, const std::string& what, const std::string& hint)
{
    throw Failure(kExitOutput, what, std::strerror(error), error == ENOSPC ? "make room on the disk" : hint);
}

// Throws Failure; of a file that cannot be written whole nothing is left.
void write(const std::string& path, std::string_view bytes, bool sync, const std::string& what,
           const std::string& hint)
{
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0)
        failToWrite(errno, what, hint);
    int error = writeTo(fd, bytes);
    if (error == 0 && sync && fsync(fd) != 0)
        error = errno;
    if (close(fd) != 0 && error == 0)
        error = errno;
    if (error == 0)
        return;
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode))
        unlink(path.c_str());
    failToWrite(error, what, hint);
}

} // namespace

std::string readWholeFile(const std::string& path, size_t most, const std::string& what,
                          const std::string& hint)
{
    const auto fail = [&](int error) { throw Failure(kExitNoInput, what, std::strerror(error), hint); };
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        fail(errno);
    std::string contents;
    size_t size = 0;
    for (ssize_t got = 1; size < most && got != 0;) {
        if (size == contents.size())
            contents.resize(std::min(most, size + (size_t{1} << 16)));
        got = read(fd, contents.data() + size, contents.size() - size);
        if (got < 0 && errno != EINTR) {
            const int error = errno;
            close(fd);
            fail(error);
        }
        size += static_cast<size_t>(got > 0 ? got : 0);
    }
    close(fd);
    contents.resize(size);
    return contents;
}

void writeWholeFile(const std::string& path, std::string_view bytes, const std::string& what,
                    const std::string& hint)
{
    write(path, bytes, false, what, hint);
}

void replaceWholeFile(const std::string& path, std::string_view bytes, const std::string& what,
                      const std::string& hint)
{
    const std::string beside = path + ".new";
    write(beside, bytes, true, what, hint);
    if (std::rename(beside.c_str(), path.c_str()) == 0)
        return;
    const int error = errno;
    unlink(beside.c_str());
    failToWrite(error, what, hint);
}

void makeFolder(const std::string& path)
{
    namespace fs = std::filesystem;
    std::error_code error;
    std::vector<std::string> above; // of those that are made
    for (fs::path at = path; !at.empty() && !fs::exists(at, error); at = at.parent_path())
        above.push_back(at.has_parent_path() ? at.parent_path() : ".");
    fs::create_directories(path, error);
    if (std::error_code unknown; !fs::is_directory(path, unknown))
        throw Failure(kExitOutput, "cannot make the folder " + path,
                      error ? error.message() : "something else stands there", "choose another one");
    std::ranges::for_each(above, flushNames);
}

void flushNames(const std::string& folder)
{
    const int fd = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    fsync(fd);
    close(fd);
}

} // namespace tool

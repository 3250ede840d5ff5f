// The new file is written under a temporary name beside the old one, flushed, and renamed.
//
// A temporary name belongs to who holds the lock (flock) on the file under it. The kernel drops the lock of a
// killed writer, so that the next writer in the folder can tell its leftover from a file at work, in whatever
// process, container or thread that is, and removes it. Nobody waits for a lock: a name at work means to try
// the next one.
#include "replacement.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace csv {

namespace {

constexpr int kMaxLinks = 40; // as the kernel

// What a signal ends, where a disk is far away, goes on.
int flush(int file)
{
    int result;
    while ((result = fsync(file)) != 0 && errno == EINTR) {
    }
    return result;
}

} // namespace

Replacement::~Replacement()
{
    if (m_file >= 0) {
        // The lock still keeps the name ours.
        unlinkat(m_folder, m_temporary, 0);
        close(m_file);
    }
    if (m_folder >= 0)
        close(m_folder);
}

// Opens the folder of the file; name, mode and owner of the file are its real ones, behind all links.
Failure Replacement::findFolder(const char* path)
{
    char text[PATH_MAX]; // the folder's path, then where a link leads
    for (int links = 0; links <= kMaxLinks; ++links) {
        const char* const slash = strrchr(path, '/');
        const char* const name = slash != nullptr ? slash + 1 : path;
        const size_t length = static_cast<size_t>(name - path);
        if (length >= sizeof text || strlen(name) >= sizeof m_name)
            return systemFailure(ENAMETOOLONG);
        if (*name == '\0')
            return systemFailure(EISDIR);
        memcpy(m_name, name, strlen(name) + 1);
        memmove(text, path, length); // `path` may be there already
        text[length] = '\0';

        const int from = m_folder;
        m_folder =
            openat(from >= 0 ? from : AT_FDCWD, length != 0 ? text : ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        const int error = errno;
        if (from >= 0)
            close(from);
        if (m_folder < 0)
            return systemFailure(error);

        struct stat status;
        if (fstatat(m_folder, m_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            return errno == ENOENT ? Failure{} : systemFailure(errno);
        if (S_ISREG(status.st_mode)) {
            m_exists = true;
            m_mode = status.st_mode & 07777;
            m_owner = status.st_uid;
            m_group = status.st_gid;
            return {};
        }
        if (!S_ISLNK(status.st_mode))
            return {LSYS_ERR_NOT_FILE};
        const ssize_t size = readlinkat(m_folder, m_name, text, sizeof text);
        if (size < 0)
            return systemFailure(errno);
        if (size == sizeof text)
            return systemFailure(ENAMETOOLONG);
        text[size] = '\0';
        path = text;
    }
    return systemFailure(ELOOP);
}

// Removes the file under the temporary name if its writer is gone.
bool Replacement::reclaim() const
{
    const int file = openat(m_folder, m_temporary, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file < 0)
        return errno == ENOENT;
    struct stat locked;
    struct stat named;
    // Between the opening and the lock its writer may have finished, and another have taken the name.
    const bool gone =
        flock(file, LOCK_EX | LOCK_NB) == 0 && fstat(file, &locked) == 0 && S_ISREG(locked.st_mode) &&
        fstatat(m_folder, m_temporary, &named, AT_SYMLINK_NOFOLLOW) == 0 && named.st_ino == locked.st_ino &&
        named.st_dev == locked.st_dev && unlinkat(m_folder, m_temporary, 0) == 0;
    close(file);
    return gone;
}

Failure Replacement::makeTemporary()
{
    for (unsigned number = 0;;) {
        snprintf(m_temporary, sizeof m_temporary, ".lsys.%u.tmp", number);
        const int file = openat(m_folder, m_temporary, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                                m_mode & 0777);
        if (file < 0) {
            if (errno != EEXIST)
                return systemFailure(errno);
            if (!reclaim())
                ++number;
            continue;
        }
        // Until the lock is there the file looks like a leftover. Where a file system has no locks, it is
        // safe: nobody gets the lock that removing it takes.
        struct stat status;
        const bool lost = flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        if (!lost && fstat(file, &status) != 0) {
            const Failure failure = systemFailure(errno);
            close(file);
            return failure;
        }
        if (lost || status.st_nlink == 0) {
            close(file);
            continue;
        }
        m_file = file;
        // Another owner is kept where we may; the mode after it, which a change of owner narrows.
        if (m_exists && (status.st_uid != m_owner || status.st_gid != m_group) &&
            fchown(file, m_owner, m_group) != 0)
            m_mode &= 0777; // set-id bits mean another owner
        if (m_exists && (status.st_mode & 07777) != m_mode && fchmod(file, m_mode) != 0)
            return systemFailure(errno);
        return {};
    }
}

Failure Replacement::begin(const char* path)
{
    const Failure failure = findFolder(path);
    if (failure.code != LSYS_OK)
        return failure;
    // The folder's permission alone would do to replace a file that denies being written. Its owner, who
    // nearly always is who writes, needs no look at what groups and access lists may do.
    const bool owned = m_owner == geteuid() && (m_mode & S_IWUSR) != 0;
    if (m_exists && !owned && faccessat(m_folder, m_name, W_OK, AT_EACCESS) != 0)
        return systemFailure(errno);
    return makeTemporary();
}

Failure Replacement::write(const uint8_t* bytes, size_t count)
{
    while (count != 0) {
        const ssize_t written = ::write(m_file, bytes, count);
        if (written < 0 && errno != EINTR)
            return systemFailure(errno);
        if (written > 0) {
            bytes += written;
            count -= static_cast<size_t>(written);
        }
    }
    return {};
}

Failure Replacement::commit()
{
    if (flush(m_file) != 0 || renameat(m_folder, m_temporary, m_folder, m_name) != 0)
        return systemFailure(errno);
    close(m_file);
    m_file = -1;
    // Not every file system can flush a folder.
    if (flush(m_folder) != 0 && errno != EINVAL)
        return systemFailure(errno);
    return {};
}

} // namespace csv

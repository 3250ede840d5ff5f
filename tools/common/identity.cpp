#include "common/identity.h"

#include "common/failure.h"
#include "common/numbers.h"
#include "common/text.h"
#include "libvx63.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool {

namespace {

constexpr uint64_t kHighestId = 17;

bool isService(uint64_t id)
{
    return id == PROC_ID_PSYS || id == PROC_ID_PDEV || id == PROC_ID_PKEY || id == PROC_ID_PBUZ ||
           id == PROC_ID_PMEAS;
}

// An empty path when the namespace cannot be told.
std::string lockPath(int32_t id)
{
    struct stat ipc {};
    if (stat("/proc/self/ns/ipc", &ipc) != 0)
        return "";
    return format("/tmp/vx63-%d-%llu.lock", id, static_cast<unsigned long long>(ipc.st_ino));
}

int openLock(const std::string& path)
{
    // O_NONBLOCK: whatever lies there, a FIFO too, must not hold us up. First without O_CREAT: the kernel
    // refuses that for another user's file in /tmp, although reading it is allowed and enough.
    constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    const int fd = open(path.c_str(), kFlags);
    return fd >= 0 || errno != ENOENT ? fd : open(path.c_str(), kFlags | O_CREAT, 0644);
}

// The file at the path is the one that was opened, and not one that an ending vx63 has just removed.
bool isCurrent(int fd, const std::string& path)
{
    struct stat opened {
    }, atPath{};
    return fstat(fd, &opened) == 0 && stat(path.c_str(), &atPath) == 0 && opened.st_dev == atPath.st_dev &&
           opened.st_ino == atPath.st_ino;
}

} // namespace

int32_t processIdIn(const std::string& option, const std::string& text)
{
    const uint64_t value = numberIn(option, text, 0, kHighestId);
    if (isService(value))
        throw WrongUsage(option, format("%s is the id of a service", text.c_str()));
    return static_cast<int32_t>(value);
}

Identity::Identity(int32_t id) : m_path(lockPath(id))
{
    while (!m_path.empty()) {
        m_fd = openLock(m_path);
        if (m_fd < 0)
            break; // no lock to be had: go on without
        if (flock(m_fd, LOCK_EX | LOCK_NB) != 0) {
            const bool taken = errno == EWOULDBLOCK;
            close(m_fd);
            m_fd = -1;
            if (taken)
                throw Failure(kExitBusy, format("cannot use process id %d", id), "another vx63 is using it",
                              "wait until it ends, or choose another id with --id");
            break;
        }
        if (isCurrent(m_fd, m_path))
            break;
        close(m_fd);
        m_fd = -1;
    }
    vx63_init(id); // the id is known to be valid
}

Identity::~Identity()
{
    if (m_fd < 0)
        return;
    unlink(m_path.c_str()); // still locked: nobody else can hold this file
    close(m_fd);
}

} // namespace tool

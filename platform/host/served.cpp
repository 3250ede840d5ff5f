// Who has a queue open, as /proc tells it, whose it is and what lies in it. Like the rest of liblmsg it
// neither locks nor allocates, which opendir() would.
#include "lmsg_served.h"

#include "queue.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <mqueue.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Calls `see` with the name of each entry that is a number until it says yes; gives whether it did.
template <class See>
bool lookThrough(int folder, See see)
{
    alignas(dirent64) char entries[4096];
    ssize_t size;
    while ((size = getdents64(folder, entries, sizeof entries)) > 0) {
        for (ssize_t at = 0; at < size;) {
            dirent64 entry;
            memcpy(&entry, entries + at, offsetof(dirent64, d_name));
            const char* const name = entries + at + offsetof(dirent64, d_name);
            at += entry.d_reclen;
            if (name[0] >= '0' && name[0] <= '9' && see(name))
                return true;
        }
    }
    return false;
}

bool hasOpen(int proc, const char* process, const char* queueName, const struct stat& queue)
{
    char path[32];
    snprintf(path, sizeof path, "%s/fd", process);
    const int folder = openat(proc, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return false;
    const bool found = lookThrough(folder, [&](const char* descriptor) {
        // By name first: to ask what a file is may hang where its server is gone. The names of the queues of
        // all IPC namespaces are alike, device and inode are not.
        char target[16] = {};
        struct stat status;
        return readlinkat(folder, descriptor, target, sizeof target - 1) > 0 &&
               strcmp(target, queueName) == 0 && fstatat(folder, descriptor, &status, 0) == 0 &&
               status.st_dev == queue.st_dev && status.st_ino == queue.st_ino;
    });
    close(folder);
    return found;
}

// What the queue of that name is and holds, or the errno for which it cannot be told.
int look(const QueueName& name, struct stat& status, mq_attr& attributes)
{
    const mqd_t descriptor = mq_open(name.text, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return errno;
    const bool known = fstat(descriptor, &status) == 0 && mq_getattr(descriptor, &attributes) == 0;
    const int error = known ? 0 : errno;
    close(descriptor);
    return error;
}

} // namespace

#define LMSG_EXPORT extern "C" __attribute__((visibility("default")))

LMSG_EXPORT int32_t lmsg_isServed(uint8_t ucQueId)
{
    const QueueName name(ucQueId);
    struct stat queue {};
    mq_attr attributes{};
    const int error = look(name, queue, attributes);
    if (error == ENOENT)
        return LMSG_SERVED_NONE;
    // Processes of other users may not be looked at; a queue that is trusted is none of theirs.
    const int proc = error == 0 && isTrusted(queue) ? open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC) : -1;
    if (proc < 0)
        return LMSG_SERVED_UNKNOWN;

    bool self = false; // an empty /proc, or that of another namespace, tells nothing
    const bool served = lookThrough(proc, [&](const char* process) {
        const bool own = atol(process) == getpid();
        self = self || own;
        return !own && hasOpen(proc, process, name.text, queue);
    });
    close(proc);
    return served ? LMSG_SERVED_OPEN : self ? LMSG_SERVED_LEFT : LMSG_SERVED_UNKNOWN;
}

LMSG_EXPORT int32_t lmsg_lookAt(uint8_t ucQueId, LmsgQueue* pQueue)
{
    struct stat queue {};
    mq_attr attributes{};
    if (look(QueueName(ucQueId), queue, attributes) != 0)
        return -1;
    *pQueue = {queue.st_uid, queue.st_mode & 07777, static_cast<uint32_t>(attributes.mq_curmsgs),
               isTrusted(queue)};
    return 0;
}

// Who has a queue open, as /proc tells it. Like the rest of liblmsg it neither locks nor allocates, which
// opendir() would.
#include "lmsg_served.h"

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

enum class Look { no, yes, refused };

// Calls `see` with the name of each entry that is a number until it says yes. What it was refused counts
// only when nothing else says yes.
template <class See>
Look lookThrough(int folder, See see)
{
    Look result = Look::no;
    alignas(dirent64) char entries[4096];
    ssize_t size;
    while ((size = getdents64(folder, entries, sizeof entries)) > 0) {
        for (ssize_t at = 0; at < size;) {
            dirent64 entry;
            memcpy(&entry, entries + at, offsetof(dirent64, d_name));
            const char* const name = entries + at + offsetof(dirent64, d_name);
            at += entry.d_reclen;
            if (name[0] < '0' || name[0] > '9')
                continue;
            const Look seen = see(name);
            if (seen == Look::yes)
                return seen;
            if (seen == Look::refused)
                result = seen;
        }
    }
    return size < 0 && errno != ENOENT ? Look::refused : result; // ENOENT: the process ended meanwhile
}

struct Queue {
    const char* name;
    struct stat status;
};

Look hasOpen(int proc, const char* process, const Queue& queue)
{
    char path[32];
    snprintf(path, sizeof path, "%s/fd", process);
    const int folder = openat(proc, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return errno == ENOENT || errno == ESRCH ? Look::no : Look::refused;
    const Look result = lookThrough(folder, [&](const char* descriptor) {
        // By name first: to ask what a file is may hang where its server is gone. The names of the queues of
        // all IPC namespaces are alike, device and inode are not.
        char target[16] = {};
        struct stat status;
        const bool same = readlinkat(folder, descriptor, target, sizeof target - 1) > 0 &&
                          strcmp(target, queue.name) == 0 && fstatat(folder, descriptor, &status, 0) == 0 &&
                          status.st_dev == queue.status.st_dev && status.st_ino == queue.status.st_ino;
        return same ? Look::yes : Look::no;
    });
    close(folder);
    return result;
}

} // namespace

extern "C" __attribute__((visibility("default"))) int32_t lmsg_isServed(uint8_t ucQueId)
{
    char name[sizeof "/vx63.255"];
    snprintf(name, sizeof name, "/vx63.%u", static_cast<unsigned>(ucQueId));
    const mqd_t descriptor = mq_open(name, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return errno == ENOENT ? LMSG_SERVED_NONE : LMSG_SERVED_UNKNOWN;
    Queue queue{name, {}};
    const int known = fstat(descriptor, &queue.status);
    close(descriptor);
    const int proc = known == 0 ? open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC) : -1;
    if (proc < 0)
        return LMSG_SERVED_UNKNOWN;

    bool self = false;  // an empty /proc, or that of another namespace, tells nothing
    bool first = false; // process 1 is always there: one that is hidden (hidepid) is not the only one
    const Look look = lookThrough(proc, [&](const char* process) {
        const long id = atol(process);
        first = first || id == 1;
        if (id == getpid()) {
            self = true;
            return Look::no;
        }
        return hasOpen(proc, process, queue);
    });
    close(proc);
    if (look == Look::yes)
        return LMSG_SERVED_OPEN;
    // Processes of other users are always there and may not be looked at; a queue that is its owner's alone
    // is none of theirs.
    const bool shared = (queue.status.st_mode & (S_IRWXG | S_IRWXO)) != 0;
    const bool all = look != Look::refused && first;
    return self && (all || !shared) ? LMSG_SERVED_LEFT : LMSG_SERVED_UNKNOWN;
}

// liblmsg.so: the platform's message queues on a PC, over POSIX message queues. docs/message-queues.md
// tells names, geometry and kernel limits.
//
// One descriptor a queue is kept for the life of the process. Nothing here locks or allocates, so that a
// child after fork() in a program with threads can call on.
#include "lmsg.h"

#include "queue.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <mqueue.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Deep enough for a service's few clients, small enough for many meters under one user's limit.
constexpr long kDepth = 4;
constexpr mode_t kMode = 0600;

constexpr int64_t kNsPerMs = 1'000'000;
constexpr int64_t kNsPerSecond = 1'000'000'000;
static_assert(sizeof(time_t) == 8, "deadlines go beyond 2038");

// A descriptor in ppoll() does not notice that its queue was unlinked and made anew: look that often.
constexpr int64_t kLookNs = kNsPerSecond;

// A descriptor and the inode behind it: a program that closes all its descriptors leaves us a number that
// soon means another file, perhaps another queue.
struct alignas(8) Queue {
    int32_t descriptor = -1;
    uint32_t inode = 0;
};
using Slot = std::atomic<Queue>;
static_assert(Slot::is_always_lock_free);

constinit Slot s_slots[256]; // one for each id

// Whether a queue that does not exist is made.
enum class Missing { make, leave };

// What mq_open() failed with, as a result.
int32_t openError(int error)
{
    switch (error) {
    case ENOENT: // only where it is not to be made
        return LMSG_ERR_MISSING;
    case EACCES:
        return LMSG_ERR_PERMISSION;
    case EMFILE: // open files of the process, or RLIMIT_MSGQUEUE
    case ENFILE:
    case ENOMEM:
    case ENOSPC: // fs.mqueue.queues_max
    case EINVAL: // fs.mqueue.msg_max or msgsize_max is smaller than our geometry
        return LMSG_ERR_RESOURCE;
    default:
        return LMSG_ERR_SYSTEM;
    }
}

int32_t openQueue(uint8_t ucQueId, Missing missing, Queue& queue)
{
    const QueueName name(ucQueId);
    mq_attr geometry{};
    geometry.mq_maxmsg = kDepth;
    geometry.mq_msgsize = LMSG_SIZE_MAX;
    const int make = missing == Missing::make ? O_CREAT : 0;
    const mqd_t descriptor = mq_open(name.text, O_RDWR | make | O_NONBLOCK | O_CLOEXEC, kMode, &geometry);
    if (descriptor < 0)
        return openError(errno);

    // The geometry above counts only for the side that creates.
    struct stat status;
    if (mq_getattr(descriptor, &geometry) != 0 || fstat(descriptor, &status) != 0) {
        close(descriptor);
        return LMSG_ERR_SYSTEM;
    }
    if (!isTrusted(status)) {
        close(descriptor);
        return LMSG_ERR_UNTRUSTED;
    }
    if (geometry.mq_msgsize != LMSG_SIZE_MAX) {
        close(descriptor);
        return LMSG_ERR_FORMAT;
    }
    // A umask may have narrowed the mode, which would lock out the other side.
    if ((status.st_mode & kMode) != kMode)
        fchmod(descriptor, kMode);
    queue.descriptor = descriptor;
    queue.inode = static_cast<uint32_t>(status.st_ino);
    return LMSG_OK;
}

// The descriptor of a queue that has a name now; opened if need be.
int32_t findQueue(uint8_t ucQueId, Missing missing, int& descriptor)
{
    Slot& slot = s_slots[ucQueId];
    Queue kept = slot.load();
    for (;;) {
        struct stat status;
        const bool open = kept.descriptor >= 0 && fstat(kept.descriptor, &status) == 0;
        const bool ours = open && static_cast<uint32_t>(status.st_ino) == kept.inode;
        if (ours && status.st_nlink != 0) {
            descriptor = kept.descriptor;
            return LMSG_OK;
        }

        Queue fresh;
        const int32_t result = openQueue(ucQueId, missing, fresh);
        if (result != LMSG_OK)
            return result;
        const int opened = fresh.descriptor;
        // An unlinked queue is replaced under its number: were it closed, the number could mean another file
        // when a thread that has just looked it up uses it. The number may already hold the new queue, when
        // another thread has replaced it and not yet said so in the slot.
        const bool replaced = ours ? dup3(opened, kept.descriptor, O_CLOEXEC) >= 0
                                   : open && static_cast<uint32_t>(status.st_ino) == fresh.inode;
        if (replaced)
            fresh.descriptor = kept.descriptor;
        const bool stored = slot.compare_exchange_strong(kept, fresh);
        if (!stored || replaced)
            close(opened);
        if (stored)
            kept = fresh;
    }
}

int64_t now()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * kNsPerSecond + time.tv_nsec;
}

// Finds the queue and performs `attempt` on it, again whenever ppoll() sees `events`, until the attempt
// succeeds, fails for good or the time is over. The attempt gives what mq_send() or mq_receive() gave.
//
// There is nearly always room to send, so that is tried first. A message to be received is nearly always
// still to come, so that is waited for first. The last attempt follows the look at the clock that finds the
// time over: of a process that was suspended until then, however long and wherever, no answer is left behind.
template <class Attempt>
int32_t exchange(uint8_t ucQueId, Missing missing, short events, uint32_t ulTimeout, Attempt attempt)
{
    const int64_t deadline = ulTimeout == LMSG_FOREVER ? INT64_MAX : now() + ulTimeout * kNsPerMs;
    int64_t rest = ulTimeout * kNsPerMs;
    bool wait = events == POLLIN && ulTimeout != 0;
    for (;;) {
        int descriptor;
        const int32_t result = findQueue(ucQueId, missing, descriptor);
        if (result != LMSG_OK)
            return result;
        if (wait) {
            const int64_t slice = rest < kLookNs ? rest : kLookNs;
            const timespec time{static_cast<time_t>(slice / kNsPerSecond),
                                static_cast<long>(slice % kNsPerSecond)};
            pollfd ready{descriptor, events, 0};
            const int count = ppoll(&ready, 1, &time, nullptr);
            if (count < 0 && errno != EINTR)
                return errno == ENOMEM ? LMSG_ERR_RESOURCE : LMSG_ERR_SYSTEM;
            if (count <= 0) { // the queue may be another by now
                rest = deadline - now();
                wait = false;
                continue;
            }
        }
        if (attempt(descriptor) >= 0)
            return LMSG_OK;
        if (errno != EAGAIN && errno != EINTR)
            return LMSG_ERR_SYSTEM;
        if (rest <= 0)
            return LMSG_ERR_TIMEOUT;
        rest = deadline - now();
        wait = rest > 0;
    }
}

// What a message begins with: sender, receiver, command, length of the body, option; little-endian.
constexpr uint32_t kHeadSize = 8;

bool hasResponseBit(const uint8_t* message)
{
    return (message[3] & 0x80) != 0;
}

// "No request was expected here": what whoever got a request instead of a response answers to its sender,
// which may be nobody.
bool isRefusal(const uint8_t* message, uint32_t length)
{
    return length == kHeadSize && hasResponseBit(message) && message[6] == 4 && message[7] == 0;
}

// The process that a request comes from, where a meter has one of that id; else -1.
int32_t senderOf(const uint8_t* message, uint32_t length)
{
    constexpr uint8_t kLastProcess = 17;
    constexpr uint8_t kWithoutId = 255; // a thread that has none
    const bool isKnown = message[0] <= kLastProcess || message[0] == kWithoutId;
    return length >= kHeadSize && isKnown && !hasResponseBit(message) ? message[0] : -1;
}

} // namespace

#define LMSG_EXPORT extern "C" __attribute__((visibility("default")))

LMSG_EXPORT int32_t lmsg_tsndMq(uint8_t ucQueId, const void* pMsg, uint32_t ulLen, uint32_t ulTimeout)
{
    if (pMsg == nullptr || ulLen == 0 || ulLen > LMSG_SIZE_MAX)
        return LMSG_ERR_ARG;
    const auto* const message = static_cast<const uint8_t*>(pMsg);
    // A refusal may come before its receiver first waits for it, and makes no queue.
    const int32_t sender = senderOf(message, ulLen);
    int own;
    if (sender >= 0 && s_slots[sender].load().descriptor < 0)
        findQueue(static_cast<uint8_t>(sender), Missing::make, own);
    const Missing missing = isRefusal(message, ulLen) ? Missing::leave : Missing::make;
    return exchange(ucQueId, missing, POLLOUT, ulTimeout, [&](mqd_t descriptor) {
        return mq_send(descriptor, static_cast<const char*>(pMsg), ulLen, 0);
    });
}

LMSG_EXPORT int32_t lmsg_trcvMq(uint8_t ucQueId, void* pMsg, uint32_t ulLen, uint32_t* pulMsgLen,
                                uint32_t ulTimeout)
{
    if (pMsg == nullptr || ulLen < LMSG_SIZE_MAX)
        return LMSG_ERR_ARG;
    ssize_t length = 0;
    const int32_t result = exchange(ucQueId, Missing::make, POLLIN, ulTimeout, [&](mqd_t descriptor) {
        return length = mq_receive(descriptor, static_cast<char*>(pMsg), ulLen, nullptr);
    });
    if (result == LMSG_OK && pulMsgLen != nullptr)
        *pulMsgLen = static_cast<uint32_t>(length);
    return result;
}

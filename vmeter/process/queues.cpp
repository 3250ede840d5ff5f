#include "process/queues.h"

#include "failure.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <mqueue.h>
#include <string>
#include <sys/stat.h>

namespace vmeter {
namespace {

// As liblmsg names them: docs/message-queues.md.
std::string queueName(uint8_t ucQueId)
{
    return "/vx63." + std::to_string(ucQueId);
}

} // namespace

std::span<const uint8_t> queueIds()
{
    static constexpr uint8_t kIds[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 255};
    return kIds;
}

QueueClaim claimAddress()
{
    struct stat space;
    if (stat("/proc/self/ns/ipc", &space) != 0)
        throw Failure("/proc/self/ns/ipc", errorText(errno), "mount /proc");
    const std::string name =
        "vx63-vmeter/" + std::to_string(space.st_dev) + "." + std::to_string(space.st_ino);

    // An abstract socket: its name is free again as soon as its last owner has died.
    QueueClaim claim{};
    claim.address.sun_family = AF_UNIX;
    std::memcpy(claim.address.sun_path + 1, name.data(), name.size());
    claim.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    return claim;
}

Descriptor claimQueues()
{
    const QueueClaim wanted = claimAddress();
    constexpr int kWaiting = 16;
    Descriptor claim(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!claim || bind(claim.get(), reinterpret_cast<const sockaddr*>(&wanted.address), wanted.length) != 0 ||
        listen(claim.get(), kWaiting) != 0)
        throw Failure("message queues", errno == EADDRINUSE ? "another meter serves them" : errorText(errno),
                      "wait for its end, or use 'vx63-vmeter run', which has queues of its own");
    return claim;
}

bool queueExists(uint8_t ucQueId)
{
    const mqd_t queue = mq_open(queueName(ucQueId).c_str(), O_RDONLY | O_CLOEXEC);
    if (queue < 0) {
        if (errno != ENOENT && errno != EACCES) // EACCES: another user's
            throw Failure("message queue of id " + std::to_string(ucQueId), errorText(errno),
                          "close other programs");
        return errno == EACCES;
    }
    mq_close(queue);
    return true;
}

bool removeQueue(uint8_t ucQueId)
{
    return mq_unlink(queueName(ucQueId).c_str()) == 0 || errno == ENOENT;
}

} // namespace vmeter

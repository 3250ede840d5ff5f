#include "process/state_query.h"

#include "process/queues.h"

#include <cerrno>
#include <sys/socket.h>
#include <sys/time.h>

namespace vmeter {
namespace {

constexpr std::size_t kStateMax = 1 << 16; // one that is told is far smaller

// The socket's name can be seen by every user of the machine.
bool isOneOfUs(const Descriptor& peer)
{
    ucred credentials{};
    socklen_t length = sizeof credentials;
    return getsockopt(peer.get(), SOL_SOCKET, SO_PEERCRED, &credentials, &length) == 0 &&
           (credentials.uid == geteuid() || credentials.uid == 0);
}

} // namespace

void answerQueries(int claim, const std::string& state)
{
    for (;;) {
        const Descriptor peer(accept4(claim, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (!peer)
            return;
        // A state is smaller than what a socket holds.
        if (isOneOfUs(peer))
            send(peer.get(), state.data(), state.size(), MSG_NOSIGNAL);
    }
}

std::string queryState()
{
    const QueueClaim claim = claimAddress();
    const Descriptor meter(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const timeval patience{.tv_sec = 10, .tv_usec = 0}; // with a supervisor that is stopped
    setsockopt(meter.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    setsockopt(meter.get(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    if (!meter || connect(meter.get(), reinterpret_cast<const sockaddr*>(&claim.address), claim.length) != 0)
        throw Failure("state", errno == ECONNREFUSED ? "no meter serves the queues here" : errorText(errno),
                      "ask where the meter runs: vx63-vmeter run -- vx63-vmeter state");
    std::string state;
    char part[4096];
    for (std::size_t got; (got = readFully(meter.get(), part, sizeof part)) > 0 && state.size() <= kStateMax;)
        state.append(part, got);
    if (state.empty() || state.size() > kStateMax)
        throw Failure("state", "the meter does not tell",
                      "ask as the user who started it; let a service that was stopped go on (kill -CONT)");
    return state;
}

} // namespace vmeter

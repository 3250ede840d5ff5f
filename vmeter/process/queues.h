// The message queues of the IPC namespace that this process lives in.
#pragma once

#include "process/descriptor.h"

#include <cstdint>
#include <span>
#include <sys/socket.h>
#include <sys/un.h>

namespace vmeter {

// Every id that a queue of a meter can have: 0 to 17 of the process table, and 255, on which a thread
// without an id receives.
std::span<const uint8_t> queueIds();

// The socket whose owner serves the queues here.
struct QueueClaim {
    sockaddr_un address;
    socklen_t length;
};
QueueClaim claimAddress(); // throws Failure

// Makes this process the only meter on the queues as long as the descriptor is open; no file is left
// behind. The descriptor listens, see state_query.h. Throws Failure when another meter serves them.
Descriptor claimQueues();

bool queueExists(uint8_t ucQueId); // throws Failure

// Gives whether no queue of that id is left.
bool removeQueue(uint8_t ucQueId);

} // namespace vmeter

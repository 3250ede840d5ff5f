// The other side of an exchange: a process that answers, over the platform's calls or over bare queues.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <sys/types.h>
#include <vector>

namespace bench {

constexpr size_t kMessageSize = 1300;
using Message = std::vector<uint8_t>;

// The command that is answered with what was sent.
constexpr uint16_t kEcho = 0x7F01;

// A request as the library sends it, of `size` bytes with its head.
Message request(uint16_t command, size_t size);

// Makes the response of a measurement service out of the request: its length.
size_t answer(const uint8_t* request, size_t length, uint8_t* response);

// Runs `serve` in a process of its own, on one processor, until the end of this object.
class Peer {
public:
    Peer(int processor, const std::function<void()>& serve);
    ~Peer();
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

private:
    pid_t m_process;
};

// Ties the calling thread to one of the processors that the program may use, counted from 0; to any with -1.
// False where there are not so many.
bool tie(int processor);

// Ways to exchange: each has a side that asks and one that serves for ever.

// The platform's calls, as the library makes them.
struct Platform {
    static constexpr uint8_t kOwn = 3;
    static constexpr uint8_t kService = 12;
    static void ask(const Message& request);
    static void serve();
};

// Nothing but the two system calls that an exchange takes, blocking, with a time-out by the wall clock.
struct BareQueues {
    static void ask(const Message& request);
    static void serve();
};

// The system calls of an exchange that finds a queue made anew, and waits by the monotonic clock: looking at
// the queue, sending; looking, waiting, receiving.
struct CarefulQueues {
    static void ask(const Message& request);
    static void serve();
};

} // namespace bench

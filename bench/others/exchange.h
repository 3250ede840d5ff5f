// Other ways to exchange messages between two processes.
#pragma once

#include "peer.h"

#include <memory>

namespace bench {

inline constexpr char kSocket[] = "vx63-bench.socket"; // in the current folder
inline constexpr int kAnswerTimeout = 10000;           // milliseconds, as the library waits

// Made before the process that serves is forked from the one that asks. So making it starts no thread.
class Way {
public:
    Way() = default;
    virtual ~Way() = default;
    Way(const Way&) = delete;
    Way& operator=(const Way&) = delete;

    virtual void serve() = 0; // for ever
    virtual void connect() = 0;
    virtual void ask(const Message& request) = 0;
};

[[gnu::weak]] std::unique_ptr<Way> makeGrpc();
[[gnu::weak]] std::unique_ptr<Way> makeNng();
[[gnu::weak]] std::unique_ptr<Way> makeSdBus();
[[gnu::weak]] std::unique_ptr<Way> makeZeroMq();

} // namespace bench

// How exchanges grow with the threads that make them: each has a process id of its own, one service answers
// all.
#include "groups.h"
#include "inside.h"
#include "peer.h"

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace bench {
namespace {

// Those that no service has.
constexpr int32_t kIds[] = {1, 2, 3, 4, 5, 7, 9, 11, 13, 14, 15, 16, 17};

double exchangesPerSecond(size_t threads, std::chrono::milliseconds time)
{
    std::atomic<bool> over{false};
    std::atomic<int64_t> exchanges{0};
    std::vector<std::thread> running;
    const auto start = std::chrono::steady_clock::now();
    for (size_t i = 0; i < threads; ++i) {
        running.emplace_back([&, i] {
            inside_init(kIds[i]);
            const uint8_t body[4] = {};
            uint8_t response[kMessageSize];
            int64_t made = 0;
            for (; !over; ++made)
                inside_exchange(Platform::kService, kEcho, body, sizeof body, response);
            exchanges += made;
        });
    }
    std::this_thread::sleep_for(time);
    over = true;
    for (std::thread& thread : running)
        thread.join();
    return static_cast<double>(exchanges) /
           std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

void compareThreads(Runner& runner)
{
    const Peer service(-1, Platform::serve);
    const std::chrono::milliseconds time(runner.brief() ? 5 : 700);
    for (size_t threads = 1; threads <= std::size(kIds); threads += runner.brief() ? 12 : 1)
        tell("threads", static_cast<double>(threads), "exchanges a second",
             exchangesPerSecond(threads, time));
}

} // namespace bench

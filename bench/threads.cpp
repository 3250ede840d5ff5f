// How exchanges grow with the threads that make them: each has a process id of its own, one service answers
// all.
#include "groups.h"
#include "inside.h"
#include "peer.h"
#include "require.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <numeric>
#include <thread>
#include <vector>

namespace bench {
namespace {

// Those that no service has.
constexpr int32_t kIds[] = {1, 2, 3, 4, 5, 7, 9, 11, 13, 14, 15, 16, 17};

// Exchanges a second.
struct Rate {
    double all;
    double slowest; // of the threads
};

Rate rateOf(size_t threads, std::chrono::milliseconds time)
{
    std::atomic<bool> over{false};
    std::vector<int64_t> made(threads);
    std::vector<std::thread> running;
    const auto start = std::chrono::steady_clock::now();
    for (size_t i = 0; i < threads; ++i) {
        running.emplace_back([&, i] {
            inside_init(kIds[i]);
            const uint8_t body[4] = {};
            uint8_t response[kMessageSize];
            int64_t count = 0;
            for (; !over; ++count)
                require(inside_exchange(Platform::kService, kEcho, body, sizeof body, response) == 0,
                        "an exchange", "no answer");
            made[i] = count;
        });
    }
    std::this_thread::sleep_for(time);
    over = true;
    for (std::thread& thread : running)
        thread.join();
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return {static_cast<double>(std::reduce(made.begin(), made.end())) / seconds,
            static_cast<double>(std::ranges::min(made)) / seconds};
}

} // namespace

void growThreads(Runner& runner)
{
    const Peer service(-1, Platform::serve);
    const std::chrono::milliseconds time(runner.brief() ? 5 : 150);
    const size_t step = runner.brief() ? 12 : 1;
    // What disturbs the machine for a while meets one round of each number of threads.
    struct Rates {
        std::vector<double> all;
        std::vector<double> slowest;
    };
    std::map<size_t, Rates> rates;
    for (int round = 0; round < (runner.brief() ? 1 : 5); ++round) {
        for (size_t threads = 1; threads <= std::size(kIds); threads += step) {
            const Rate rate = rateOf(threads, time);
            rates[threads].all.push_back(rate.all);
            rates[threads].slowest.push_back(rate.slowest);
        }
    }
    for (const auto& [threads, of] : rates) {
        const auto count = static_cast<double>(threads);
        tell("threads", count, "together", median(of.all));
        tell("threads", count, "lowest round", std::ranges::min(of.all));
        tell("threads", count, "highest round", std::ranges::max(of.all));
        tell("threads", count, "if all were as slow as the slowest", count * median(of.slowest));
    }
}

} // namespace bench

#include "measure/profile.h"

#include "common/exchange.h"
#include "common/interrupt.h"
#include "common/text.h"
#include "measure/limits.h"

#include <algorithm>
#include <chrono>

namespace tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kPollTime{100};

} // namespace

std::unique_ptr<DlyPrfResult> readProfile(const ChannelOptions& options, Progress& progress)
{
    Running running = startWith(
        options.condition, "the delay profile",
        [&] { return vx63_startDlyPrfMeas(options.ucDispType, &options.condition); },
        [&] { return vx63_stopDlyPrfMeas(options.ucDispType); });
    auto profile = std::make_unique<DlyPrfResult>();
    const auto start = Clock::now();
    const auto deadline = start + milliseconds(options.lockTimeoutMs);
    for (;;) {
        require("cannot read the delay profile", [&] { return vx63_getDlyPrfResult(profile.get()); });
        const auto now = Clock::now();
        if (profile->stat == VX63_DLYPRF_COMPLETE || now >= deadline || interruption() != 0)
            break;
        progress.show(format("Measuring the delay profile: %.1f s",
                             std::chrono::duration<double>(now - start).count()));
        waitFor(std::min(kPollTime, std::chrono::ceil<milliseconds>(deadline - now)));
    }
    running.stop();
    return profile->stat == VX63_DLYPRF_COMPLETE ? std::move(profile) : nullptr;
}

} // namespace tool

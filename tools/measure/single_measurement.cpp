#include "measure/single_measurement.h"

#include "common/exchange.h"
#include "common/interrupt.h"
#include "common/text.h"

#include <algorithm>
#include <chrono>

namespace tool {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kPollTime{200};

} // namespace

SingleMeasurement::SingleMeasurement(const ChannelOptions& options)
    : m_options(options),
      m_running(
          "the measurement", [&] { return vx63_startSingleMeas(options.ucDispType, &options.condition); },
          [&] { return vx63_stopSingleMeas(options.ucDispType); })
{}

SingleMeasResult SingleMeasurement::read()
{
    SingleMeasResult result{};
    require("cannot read the measurement", [&] { return vx63_getSingleMeasResult(0, &result); });
    return result;
}

SingleMeasResult SingleMeasurement::readLocked(Progress& progress)
{
    const auto start = Clock::now();
    const auto deadline = start + milliseconds(needsLock(m_options) ? m_options.lockTimeoutMs : 0);
    for (;;) {
        const SingleMeasResult result = read();
        const auto now = Clock::now();
        if (result.lock != 0 || now >= deadline)
            return result;
        progress.show(format("Waiting for lock: %.1f s, %s dBuV",
                             std::chrono::duration<double>(now - start).count(),
                             tenths(result.LEVEL).c_str()));
        waitFor(std::min(kPollTime, std::chrono::ceil<milliseconds>(deadline - now)));
        if (interruption() != 0)
            return result;
    }
}

bool needsLock(const ChannelOptions& options)
{
    return options.condition.usBdSys != VX63_BDSYS_LEVEL;
}

Reading readingNow(const ChannelOptions& options, const SingleMeasResult& result)
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return {std::chrono::floor<milliseconds>(sinceEpoch).count(), options.condition.ulFreq, result};
}

Failure noLock(const ChannelOptions& options, const std::string& why)
{
    return {kExitNoLock, format("no lock at %u kHz", options.condition.ulFreq),
            why.empty() ? format("none within %g s", static_cast<double>(options.lockTimeoutMs) / 1000) : why,
            "check --freq, --lo, --system, --mod, --input, --supply and the level"};
}

} // namespace tool

#include "measure/single_measurement.h"

#include "common/clock.h"
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

SingleMeasResult readResult()
{
    SingleMeasResult result{};
    require("cannot read the measurement", [&] { return vx63_getSingleMeasResult(0, &result); });
    return result;
}

} // namespace

SingleMeasurement::SingleMeasurement(const ChannelOptions& options, std::vector<Threshold> thresholds)
    : m_options(options), m_thresholds(std::move(thresholds)),
      m_running(startWith(
          options.condition, "the measurement",
          [&] { return vx63_startSingleMeas(options.ucDispType, &options.condition); },
          [&] { return vx63_stopSingleMeas(options.ucDispType); }))
{}

Reading SingleMeasurement::readingOf(const SingleMeasResult& result, std::optional<double> merDb) const
{
    const MeasCondition& condition = m_options.condition;
    Reading reading{unixTimeMs(), channelNameOf(condition), condition, valuesOf(result), {}, {}, {}};
    MeasStatus status{};
    if (exchange([&] { return vx63_getMeasStatus(&status); }) == VX63_OK)
        setSurroundings(reading, status);
    reading.judgement =
        judgeBy(boundsOf(m_thresholds, condition, reading.result), condition, reading.result, merDb);
    return reading;
}

const Threshold* SingleMeasurement::thresholdOf(const Reading& reading) const
{
    return tool::thresholdOf(m_thresholds, reading.condition, reading.result);
}

Reading SingleMeasurement::read()
{
    return readingOf(readResult());
}

Reading SingleMeasurement::readLocked(Progress& progress, std::optional<milliseconds> signalTime)
{
    const auto start = Clock::now();
    const auto deadline = start + milliseconds(needsLock(m_options.condition) ? m_options.lockTimeoutMs : 0);
    for (;;) {
        const SingleMeasResult result = readResult();
        const auto now = Clock::now();
        const bool noSignal =
            signalTime && (result.stat & VX63_STAT_SIGNAL) == 0 && now - start >= *signalTime;
        if (result.lock != 0 || now >= deadline || noSignal)
            return readingOf(result);
        progress.show(format("Waiting for lock: %.1f s, %s dBuV",
                             std::chrono::duration<double>(now - start).count(),
                             tenths(result.LEVEL).c_str()));
        waitFor(std::min(kPollTime, std::chrono::ceil<milliseconds>(deadline - now)));
        if (interruption() != 0)
            return readingOf(result);
    }
}

Failure noLock(const ChannelOptions& options, const std::string& why)
{
    return {kExitNoLock, format("no lock at %u kHz", options.condition.ulFreq),
            why.empty() ? format("none within %g s", static_cast<double>(options.lockTimeoutMs) / 1000) : why,
            "check --freq, --lo, --system, --mod, --input, --supply and the level"};
}

} // namespace tool

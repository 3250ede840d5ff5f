// A single measurement that runs, until it locks and after.
#pragma once

#include "common/failure.h"
#include "common/output.h"
#include "common/running.h"
#include "libvx63.h"
#include "measure/channel_options.h"
#include "measure/reading.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace tool {

class SingleMeasurement {
public:
    // Starts it. Throws Failure.
    explicit SingleMeasurement(const ChannelOptions& options,
                               std::vector<Threshold> thresholds = readThresholdsIfAny());

    // Throws Failure.
    Reading read();

    // The first reading with lock, or the last one before the time-out or an interruption. Throws Failure.
    //   signalTime  in which a signal has to be there, else lock is not waited for
    Reading readLocked(Progress& progress, std::optional<std::chrono::milliseconds> signalTime = {});

    // The reading that this result of the running measurement makes, with what is known besides.
    //   merDb  the modulation error ratio, where it is known
    Reading readingOf(const SingleMeasResult& result, std::optional<double> merDb = std::nullopt) const;

    // By which readings are judged; null where there is none.
    const Threshold* thresholdOf(const Reading& reading) const;

    // Throws Failure.
    void stop() { m_running.stop(); }

    // It is not stopped: another start takes its place.
    void leave() { m_running.leave(); }

private:
    const ChannelOptions& m_options;
    std::vector<Threshold> m_thresholds;
    Running m_running;
};

// None within the time-out of the options, unless `why` says otherwise.
Failure noLock(const ChannelOptions& options, const std::string& why = "");

} // namespace tool

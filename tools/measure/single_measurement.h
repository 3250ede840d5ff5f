// A single measurement that runs, until it locks and after.
#pragma once

#include "common/failure.h"
#include "common/output.h"
#include "common/running.h"
#include "libvx63.h"
#include "measure/channel_options.h"
#include "measure/reading.h"

namespace tool {

class SingleMeasurement {
public:
    // Starts it. Throws Failure.
    explicit SingleMeasurement(const ChannelOptions& options);

    // Throws Failure.
    SingleMeasResult read();

    // The first reading with lock, or the last one before the time-out or an interruption. Throws Failure.
    SingleMeasResult readLocked(Progress& progress);

    // Throws Failure.
    void stop() { m_running.stop(); }

private:
    const ChannelOptions& m_options;
    Running m_running;
};

// Of a level carrier only the level is measured.
bool needsLock(const ChannelOptions& options);

// The reading of the channel, taken now.
Reading readingNow(const ChannelOptions& options, const SingleMeasResult& result);

// None within the time-out of the options, unless `why` says otherwise.
Failure noLock(const ChannelOptions& options, const std::string& why = "");

} // namespace tool

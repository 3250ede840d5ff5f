// vx63 live shows one channel, over and over, on the whole terminal: a thread measures, another one draws.
// This file: what the one tells the other.
#pragma once

#include "libvx63.h"
#include "measure/judgement.h"
#include "measure/modulation_error.h"
#include "measure/reading.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace tool {

struct LiveReading {
    Reading reading;
    std::optional<double> merDb;
    std::optional<Threshold> threshold;
    std::vector<ConstaPoint> points;
    std::optional<IdealPoints> ideal;
};

struct Sample {
    int64_t timeMs;
    std::optional<double> level; // dBuV; nothing where the trace is interrupted
    std::optional<double> cn;    // dB
};

// Of what has been measured since the channel was tuned, or since it was reset.
struct History {
    static constexpr size_t kMost = 2000;

    void add(const Reading& reading);
    void interrupt(int64_t timeMs);
    void push(const Sample& sample);

    std::deque<Sample> trace;
    std::optional<double> levelPeak;
    std::optional<double> cnPeak;
};

struct LiveState {
    std::string channel; // empty: it has no name
    uint32_t frequencyKhz = 0;
    std::optional<LiveReading> last; // nothing right after tuning
    History history;
    bool tone = false;
    std::optional<uint64_t> recorded; // readings in the file
    std::string message;              // what happened last
    std::string trouble;              // why there are no readings; empty: there are
    int64_t troubleSinceMs = 0;
    int64_t askedMs = 0; // since when the meter is waited for; 0: it is not
};

} // namespace tool

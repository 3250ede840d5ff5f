// The measurement behind vx63 live: it goes on to the next channel, and begins anew when the meter was lost.
#pragma once

#include "live/state.h"
#include "measure/channel_options.h"
#include "measure/point_collection.h"
#include "measure/single_measurement.h"

#include <optional>
#include <string>

namespace tool {

class Session {
public:
    // Selects the input and starts. Throws Failure.
    //   withPoints  readings have constellation points and the modulation error ratio
    Session(const ChannelOptions& options, bool withPoints);

    // The next reading; null where the meter is lost: then trouble() tells why, and each further step tries
    // to begin anew.
    const LiveReading* step();
    const std::string& trouble() const { return m_trouble; }

    // Another channel or input. Throws Failure or WrongUsage where there is none such, and nothing changes;
    // when the meter does not take it, the next step tells.
    void tuneNeighbour(int steps);
    void tune(const std::string& channelOrFrequency);
    void selectOtherInput();

    std::string channel() const; // empty: it has no name
    uint32_t frequencyKhz() const { return m_options.condition.ulFreq; }
    int32_t input() const { return m_input; }

    // Without it the end stops what runs, as far as the meter answers. Throws Failure.
    void stop();

private:
    void start();
    void restart();
    void take(const ChannelOptions& options);
    void lose(const Failure& failure);
    void read();
    void readPoints();

    const ChannelOptions m_asked; // as the command line has it
    ChannelOptions m_options;
    bool m_withPoints;
    int32_t m_input = 0;
    std::optional<SingleMeasurement> m_measurement;
    std::optional<PointCollection> m_collection;
    LiveReading m_last;
    std::string m_trouble;
};

} // namespace tool

// A survey: which channels are measured at which points of a site, what came out, and by what it is judged.
#pragma once

#include "libvx63.h"
#include "measure/judgement.h"
#include "measure/reading.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool {

struct SurveyChannel {
    std::string name;          // unique within its list
    uint32_t frequencyKhz = 0; // that of the first way; others are near
    std::vector<MeasCondition>
        ways;             // in which it can be occupied: the first that locks counts; not in results
    bool expected = true; // a channel without a signal fails; else it is not judged
};

struct SurveyList {
    std::string name; // unique within its point: "uhf"
    std::optional<uint32_t> input;
    Bounds slope; // of the greatest difference of level between channels of the list that lock, in dB
    std::vector<SurveyChannel> channels;
};

struct SurveyPoint {
    std::string name; // unique: "outlet 1"
    std::string note;
    std::vector<SurveyList> lists;
};

// What the meter says of itself.
struct SurveyMeter {
    std::string model;
    std::string serial;
    std::string version;                     // of its main program
    std::optional<int32_t> angleCalibration; // state of the angle sensor's: 0 never, 4 finished
};

struct Survey {
    int64_t timeMs = 0; // Unix time, milliseconds: begun, or gone on with
    std::string site;
    std::string by; // who measures
    std::string note;
    SurveyMeter meter;
    std::vector<SurveyPoint> points;
};

struct SurveyReading {
    std::string point;
    std::string list;
    Reading reading{}; // its channel names the channel of the list; judged by the bounds
    std::optional<double> merDb;
    ChannelBounds bounds;
    std::vector<ConstaPoint> constellation;
    std::vector<int8_t> delayProfile; // as DlyPrfResult has it
    std::string trouble;              // why what was to be captured is not there
};

struct SurveyResults {
    Survey survey;                       // as it was gone on with last
    std::vector<SurveyReading> readings; // the last one of each channel, in the order of the survey
    size_t strangers = 0;                // readings of what the survey no longer has
};

} // namespace tool

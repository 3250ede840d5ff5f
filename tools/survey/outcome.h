// What a survey comes to: the verdict of each channel, of each point, and of the whole.
#pragma once

#include "survey/survey.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tool {

// What came of one channel.
struct ChannelOutcome {
    const SurveyChannel* channel;
    const SurveyReading* reading; // null: not measured
    Verdict verdict;              // none as well: not judged, or not expected and without a signal
    std::string why;              // "level, C/N", "no signal"; of what passes nothing
};

struct ListOutcome {
    const SurveyList* list;
    std::vector<ChannelOutcome> channels;
    std::optional<double> slopeDb; // of two channels that lock, or more
    std::string strongest, weakest;
    Verdict slope;
};

// The channels in their numbers.
struct Counts {
    size_t all = 0;
    size_t measured = 0;
    size_t passed = 0;
    size_t marginal = 0;
    size_t failed = 0;

    size_t unjudged() const { return measured - passed - marginal - failed; }
};

struct PointOutcome {
    const SurveyPoint* point;
    std::vector<ListOutcome> lists;
    Counts counts;
    Verdict verdict; // the worst of its channels and slopes
};

struct SurveyOutcome {
    std::vector<PointOutcome> points;
    Counts counts;
    Verdict verdict;
};

//   reading  null: not measured
ChannelOutcome outcomeOf(const SurveyChannel& channel, const SurveyReading* reading);

// Points into the results, which must outlive it.
SurveyOutcome outcomeOf(const SurveyResults& results);

} // namespace tool

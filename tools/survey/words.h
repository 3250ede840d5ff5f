// The words in which reports and comparisons tell of a survey.
#pragma once

#include "survey/outcome.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tool {

const char* verdictWord(Verdict verdict); // "not judged" for none

// "pass", "not measured", "no signal", "not judged".
const char* verdictWord(const ChannelOutcome& channel);

// The same and why: "fail: level, C/N". Of what is not judged only why, if that is known.
std::string verdictText(Verdict verdict, const std::string& why);
std::string verdictText(const ChannelOutcome& channel);

// A channel that a report need not have a line of its own for: not measured, or empty as it may be.
bool isSilent(const ChannelOutcome& channel);

// "13-15, 17, BS-1": numbers that follow each other in one piece.
std::string namesText(const std::vector<std::string>& names);

// "pass: complete, 12 channels: 10 pass, 2 not judged".
std::string summaryText(const SurveyOutcome& outcome);

// "5 of 12 channels are not measured".
std::string missingText(const Counts& counts);

std::string momentText(int64_t timeMs); // "2026-11-22 14:03:07 JST", in local time
std::string isoTime(int64_t timeMs);    // "2026-11-22T14:03:07+09:00"

// Of the first and of the last reading; of the survey where there is none.
struct Times {
    int64_t firstMs, lastMs;
};
Times timesOf(const SurveyResults& results);

} // namespace tool

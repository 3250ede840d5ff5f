// The results of a survey on disk: results.jsonl, which only grows, a line an object.
//
//   {"kind": "survey", ...}   how the survey was begun or gone on with; the last one holds
//   {"kind": "reading", ...}  what vx63 measure tells of a channel, and what a survey adds; the last one of a
//                             channel of a list at a point holds
#pragma once

#include "survey/survey.h"

#include <string>

namespace tool {

inline constexpr const char* kResultsFile = "results.jsonl";

// Whether it is of this channel, at its frequency and input.
bool isReadingOf(const SurveyReading& reading, const SurveyPoint& point, const SurveyList& list,
                 const SurveyChannel& channel);

// Each with its newline.
std::string surveyLine(const Survey& survey);
std::string readingLine(const SurveyReading& reading);

// A last line that was cut short is no reading. Throws Failure that names the line.
//   path  of results.jsonl, or of the folder that has it
//   plan  what is to be measured, in place of what the file says was; then the file can be empty
SurveyResults readResults(const std::string& path, const Survey* plan = nullptr);

} // namespace tool

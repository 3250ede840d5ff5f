// A survey on standard output: its channels as they are measured, and what they come to.
#pragma once

#include "common/json.h"
#include "common/table.h"
#include "survey/outcome.h"

#include <string>

namespace tool {

// The channels of a list, line by line.
class ChannelLines {
public:
    explicit ChannelLines(const SurveyList& list);
    std::string header() const;
    std::string line(const ChannelOutcome& outcome) const;

private:
    static Table widest(const SurveyList& list);

    const SurveyList& m_list;
    TableRows m_rows;
};

// "outlet 2, 27: fail: level"; the failed ones before the marginal ones, slopes among them.
std::vector<std::string> worstOf(const SurveyOutcome& outcome);

// "outlet 2 (3 of 12)"; of the points where something is not measured.
std::string missingOf(const SurveyOutcome& outcome);

// What stands below the channels when they are measured.
std::string closingText(const SurveyOutcome& outcome, const std::string& folder);
Json summaryJson(const SurveyOutcome& outcome, const std::string& site, const std::string& folder);

} // namespace tool

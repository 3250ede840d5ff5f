// What changed between two surveys, of one site or of two.
#pragma once

#include "common/json.h"
#include "survey/outcome.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace tool {

enum class Change { worse, better, gone, added }; // gone: measured in the first alone; added: in the second

struct SurveyDifference {
    std::string point, list;
    std::string channel;               // empty: of the whole list
    std::string quantity;              // "level_dbuv"; "measured" of what is gone or added
    std::string name;                  // of the quantity, for people
    Json before, after;                // null where there is none
    std::string beforeText, afterText; // the same for people
    std::optional<double> change;      // after less before, of values in dB
    Change kind;
};

struct SurveyComparison {
    std::vector<SurveyDifference> differences; // in the order of the first survey; what is added comes last
    size_t compared = 0;                       // channels that both have measured
};

// Channels are the same by the names of point, list and channel.
//   by  in dB: values that change by less are the same
SurveyComparison compareSurveys(const SurveyOutcome& before, const SurveyOutcome& after, double by);

} // namespace tool

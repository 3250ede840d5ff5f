// What is judged of a channel, and the edges by which it is, as plans, results and reports name them.
#pragma once

#include "measure/judgement.h"

#include <optional>

namespace tool {

// What a plan puts in place of the meter's thresholds.
struct PlanLimits {
    std::optional<Bounds> level, cnr, mer, ber, slope;
};

struct Quantity {
    const char* key;
    const char* verdictKey;
    const char* label;
    double lowest, highest; // of an edge in a plan
    Verdict Judgement::*verdict;
    Bounds ChannelBounds::*bounds;
    std::optional<Bounds> PlanLimits::*planned;
};

inline constexpr Quantity kQuantities[] = {
    {"level_dbuv", "level_verdict", "Level\u00A0(dB\u00B5V)", -50, 150, &Judgement::level,
     &ChannelBounds::level, &PlanLimits::level},
    {"cnr_db", "cnr_verdict", "C/N\u00A0(dB)", 0, 100, &Judgement::cnr, &ChannelBounds::cnr,
     &PlanLimits::cnr},
    {"mer_db", "mer_verdict", "MER\u00A0(dB)", 0, 100, &Judgement::mer, &ChannelBounds::mer,
     &PlanLimits::mer},
    {"ber", "ber_verdict", "BER", 0, 1, &Judgement::ber, &ChannelBounds::ber, &PlanLimits::ber},
};

struct Edge {
    const char* key;
    const char* words;
    std::optional<double> Bounds::*value;
};

inline constexpr Edge kEdges[] = {{"fail_below", "fails below", &Bounds::failBelow},
                                  {"marginal_below", "marginal below", &Bounds::marginalBelow},
                                  {"marginal_above", "marginal above", &Bounds::marginalAbove},
                                  {"fail_above", "fails above", &Bounds::failAbove}};

} // namespace tool

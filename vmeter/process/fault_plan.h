// Which requests are hit by the fault rules, and by what.
#pragma once

#include "model/fault_rule.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vmeter {

// What is done to one request.
struct Fault {
    FaultKind kind; // never random
    uint32_t value; // of the rule, or the default of the kind
    uint64_t seed;  // for random bytes: the same for the same request of the same run
};

// Bytes drawn from a seed, the same on every machine.
std::vector<uint8_t> randomBytes(uint64_t seed, std::size_t count);

// Decides which requests are hit. The decisions follow from the seed and the counts alone; the counts lie
// with the caller, so that they outlive a service process.
class FaultPlan {
public:
    // One count per rule, 0 at the start; rules and counts must outlive the plan.
    FaultPlan(uint64_t seed, std::span<const FaultRule> rules, std::span<std::atomic<uint32_t>> counts);

    // Counts a request in every rule that matches it and gives the fault of the first rule that hits it.
    std::optional<Fault> next(uint8_t ucProcId, uint16_t usCmd) const;

private:
    uint64_t m_seed;
    std::span<const FaultRule> m_rules;
    std::span<std::atomic<uint32_t>> m_counts;
};

} // namespace vmeter

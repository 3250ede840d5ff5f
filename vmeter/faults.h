// Faults that a scene or --fault asks for: what goes wrong, in which service, at which requests.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vmeter {

enum class FaultKind {
    silence,   // no answer
    late,      // the answer comes value milliseconds late; other requests are served meanwhile
    twice,     // the answer is sent twice
    refuse,    // transport refusal: usOptOrRet = value
    ret,       // ucRet = value
    wrong,     // the answer carries command code value instead of its own
    stray,     // a request to the client, of command code value, comes before the answer
    cut,       // the body is cut to value bytes
    oversized, // usDataLen claims value bytes, more than the message carries
    garbage,   // seeded random bytes in place of the body
    die,       // the service process ends without an answer and comes back after value milliseconds
    random     // one of the above, drawn by the seed for each request
};

struct FaultRule {
    uint8_t ucProcId = 0;
    std::optional<uint16_t> usCmd; // none: every command of the service
    uint32_t first = 1;            // requests that this rule matches are counted from 1
    uint32_t last = UINT32_MAX;
    double probability = 1.0; // chance that a counted request is hit, drawn by the seed
    FaultKind kind = FaultKind::silence;
    std::optional<uint32_t> value; // none: the default of the kind
};

// The parts of a rule as text, checked and put together; "service" and "kind" are needed, an empty
// "command" means every command. Throws std::invalid_argument that says what is wrong.
FaultRule makeFault(std::string_view service, std::string_view command, uint32_t first, uint32_t last,
                    double probability, std::string_view kind, std::optional<uint32_t> value);

// SERVICE[/COMMAND][:FIRST[-[LAST]]]=KIND[,VALUE][@PROBABILITY], e.g. "meas/0x104:2-5=late,300".
// Throws std::invalid_argument that says what is wrong.
FaultRule parseFault(const std::string& text);

// What is done to one request.
struct Fault {
    FaultKind kind; // never random
    uint32_t value; // of the rule, or the default of the kind
    uint64_t seed;  // for random bytes: the same for the same request of the same run
};

std::string_view faultName(FaultKind kind);

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

#include "process/fault_plan.h"

#include "scene/fault_rules.h"
#include "signal/random.h"

namespace vmeter {
namespace {

constexpr auto kDrawnKinds = static_cast<uint64_t>(FaultKind::random); // all before random itself

} // namespace

std::vector<uint8_t> randomBytes(uint64_t seed, std::size_t count)
{
    std::vector<uint8_t> bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<uint8_t>(splitMix64(seed + i / 8) >> (i % 8 * 8));
    return bytes;
}

FaultPlan::FaultPlan(uint64_t seed, std::span<const FaultRule> rules, std::span<std::atomic<uint32_t>> counts)
    : m_seed(seed), m_rules(rules), m_counts(counts)
{}

std::optional<Fault> FaultPlan::next(uint8_t ucProcId, uint16_t usCmd) const
{
    std::optional<Fault> fault;
    for (std::size_t i = 0; i < m_rules.size(); ++i) {
        const FaultRule& rule = m_rules[i];
        if (rule.ucProcId != ucProcId || (rule.usCmd && *rule.usCmd != usCmd))
            continue;
        const uint32_t count = ++m_counts[i];
        if (fault || count < rule.first || count > rule.last)
            continue;

        // A chain of draws that starts anew with every request: nothing but the counts is carried over.
        const uint64_t chance = splitMix64(splitMix64(splitMix64(m_seed) + i) + count);
        if (toUniform(chance) >= rule.probability)
            continue;
        const uint64_t drawn = splitMix64(chance);
        const FaultKind kind =
            rule.kind == FaultKind::random ? static_cast<FaultKind>(drawn % kDrawnKinds) : rule.kind;
        fault = Fault{kind, valueOf(rule, kind), splitMix64(drawn)};
    }
    return fault;
}

} // namespace vmeter

// Reads any text as a fault rule: what is accepted is the same rule when it is written out in full, and a
// plan can judge requests by it; what is refused is refused for a reason.
#include "cli/printable.h"
#include "held.h"
#include "process/fault_plan.h"
#include "scene/fault_rules.h"
#include "services/service.h"

#include <cstdio>
#include <stdexcept>

using held::require;
using namespace vmeter;

namespace {

std::string inFull(const FaultRule& rule)
{
    std::string text;
    for (const Service* const service : kServices)
        if (service->ucProcId == rule.ucProcId)
            text = service->name;
    if (rule.usCmd)
        text += "/" + std::to_string(*rule.usCmd);
    text += ":" + std::to_string(rule.first) + "-" + std::to_string(rule.last) + "=";
    text += faultName(rule.kind);
    if (rule.value)
        text += "," + std::to_string(*rule.value);
    char probability[40];
    snprintf(probability, sizeof probability, "@%.17g", rule.probability);
    return text + probability;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    FaultRule rule;
    try {
        rule = parseFault(text);
    } catch (const std::invalid_argument& refused) {
        const std::string why = refused.what();
        require(!why.empty() && why.size() < 2 * size + 1000, "a refusal without a reason, or without an end",
                why);
        require(held::isPrintable(cli::printable(why)), "a refusal that is not printable", why);
        return 0;
    }
    require(rule.first >= 1 && rule.first <= rule.last && rule.probability >= 0 && rule.probability <= 1,
            "a rule that cannot be", text);
    const std::string full = inFull(rule);
    try {
        require(inFull(parseFault(full)) == full, "the rule in full is another one", full);
    } catch (const std::invalid_argument& refused) {
        require(false, refused.what(), full);
    }
    std::atomic<uint32_t> counts[1] = {rule.first - 1};
    const FaultPlan plan(1, {&rule, 1}, counts);
    const auto fault = plan.next(rule.ucProcId, rule.usCmd.value_or(1));
    require(counts[0] == rule.first, "a request that is not counted", full);
    require(fault.has_value() || rule.probability < 1, "a sure fault that does not come", full);
    require(!fault || fault->kind != FaultKind::random, "a fault of no kind", full);
    return 0;
}

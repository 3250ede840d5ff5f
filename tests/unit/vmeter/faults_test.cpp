// Fault rules: what is read, what is refused and how that is said, and which requests are hit.
#include "process/fault_plan.h"
#include "scene/fault_rules.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <limits>
#include <stdexcept>

namespace vmeter {
namespace {

std::string refusal(const std::string& text)
{
    try {
        parseFault(text);
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "accepted";
}

TEST(Faults, ServiceAndKindAreEnough)
{
    const FaultRule rule = parseFault("buz=silence");
    EXPECT_EQ(rule.ucProcId, 10);
    EXPECT_FALSE(rule.usCmd);
    EXPECT_EQ(rule.first, 1u);
    EXPECT_EQ(rule.last, 4294967295u);
    EXPECT_EQ(rule.probability, 1.0);
    EXPECT_EQ(rule.kind, FaultKind::silence);
    EXPECT_FALSE(rule.value);
}

TEST(Faults, EveryPartIsRead)
{
    const FaultRule rule = parseFault("meas/0x104:2-5=late,300@0.25");
    EXPECT_EQ(rule.ucProcId, 12);
    EXPECT_EQ(rule.usCmd, 0x104);
    EXPECT_EQ(rule.first, 2u);
    EXPECT_EQ(rule.last, 5u);
    EXPECT_EQ(rule.probability, 0.25);
    EXPECT_EQ(rule.kind, FaultKind::late);
    EXPECT_EQ(rule.value, 300u);
}

TEST(Faults, ServicesHaveTheirIds)
{
    const std::pair<const char*, int> services[] = {
        {"sys", 0}, {"dev", 6}, {"key", 8}, {"buz", 10}, {"meas", 12}};
    for (const auto& [name, id] : services)
        EXPECT_EQ(makeFault(name, "", 1, 1, 1, "silence", {}).ucProcId, id) << name;
}

TEST(Faults, CommandsHaveNamesAndNumbers)
{
    for (const char* command : {"260", "0x104", "0X104", "0x0104", "single-result"})
        EXPECT_EQ(makeFault("meas", command, 1, 1, 1, "silence", {}).usCmd, 0x104) << command;
    EXPECT_EQ(makeFault("key", "0", 1, 1, 1, "silence", {}).usCmd, 0);
    EXPECT_EQ(makeFault("key", "0x7FFF", 1, 1, 1, "silence", {}).usCmd, 0x7FFF);
}

TEST(Faults, RangesOfRequests)
{
    EXPECT_EQ(parseFault("sys:3=silence").first, 3u);
    EXPECT_EQ(parseFault("sys:3=silence").last, 3u);
    EXPECT_EQ(parseFault("sys:3-=silence").first, 3u);
    EXPECT_EQ(parseFault("sys:3-=silence").last, 4294967295u);
    EXPECT_EQ(parseFault("sys:4294967295=silence").first, 4294967295u);
}

TEST(Faults, BadRulesAreRefusedWithTheReason)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "no '=' between the requests and the fault"},
        {"=silence", "unknown service '' (known: sys, dev, key, buz, meas)"},
        {"MEAS=silence", "unknown service 'MEAS' (known: sys, dev, key, buz, meas): did you mean 'meas'?"},
        {"meas/=silence", "no command after '/'"},
        {"key/0x8000=silence",
         "unknown command '0x8000' of service key (known: key-status; or a code from 0 to 0x7FFF)"},
        {"key/0x=silence",
         "unknown command '0x' of service key (known: key-status; or a code from 0 to 0x7FFF)"},
        {"meas:=silence", "request '' is not a number"},
        {"meas:1-x=silence", "request 'x' is not a number"},
        {"meas:+1=silence", "request '+1' is not a number"},
        {"meas:0=silence", "requests are counted from 1"},
        {"meas:5-4=silence", "the last request (4) comes before the first (5)"},
        {"meas=", "unknown fault '' (known: silence, late, twice, refuse, ret, wrong, stray, cut, oversized, "
                  "garbage, die, random)"},
        {"meas=twice,1", "fault 'twice' takes no value"},
        {"meas=late,3600001", "value 3600001 of fault 'late' is not from 0 to 3600000"},
        {"meas=refuse,0", "value 0 of fault 'refuse' is not from 1 to 65535"},
        {"meas=wrong,0x8000", "value 32768 of fault 'wrong' is not from 0 to 32767"},
        {"meas=cut,1293", "value 1293 of fault 'cut' is not from 0 to 1292"},
        {"meas=ret,99999999999999999999", "value '99999999999999999999' is not a number"},
        {"meas=silence@", "probability '' is not a number"},
        {"meas=silence@1x", "probability '1x' is not a number"},
        {"meas=silence@-0.1", "the probability is not from 0 to 1"},
        {"meas=silence@inf", "the probability is not from 0 to 1"},
        {"meas=silence@nan", "the probability is not from 0 to 1"},
    };
    for (const auto& [rule, reason] : cases)
        EXPECT_EQ(refusal(rule), reason) << rule;
}

RC_GTEST_PROP(Faults, AnyTextIsReadOrRefused, (const std::string& text))
{
    refusal(text);
    refusal("meas" + text);
    refusal("meas=" + text);
    refusal("meas=late," + text);
}

// A plan with its counts.
template <std::size_t N>
struct Planned {
    std::array<FaultRule, N> rules;
    std::array<std::atomic<uint32_t>, N> counts{};
    uint64_t seed = 1;

    std::optional<FaultKind> next(uint8_t ucProcId = 12, uint16_t usCmd = 0x17)
    {
        const std::optional<Fault> fault = FaultPlan(seed, rules, counts).next(ucProcId, usCmd);
        return fault ? std::optional(fault->kind) : std::nullopt;
    }
};

TEST(Faults, OnlyTheRequestsToldAreHit)
{
    Planned<1> planned{{parseFault("meas/0x17:2-3=twice")}};
    EXPECT_EQ(planned.next(), std::nullopt);
    EXPECT_EQ(planned.next(12, 0x18), std::nullopt); // not counted
    EXPECT_EQ(planned.next(6, 0x17), std::nullopt);
    EXPECT_EQ(planned.next(), FaultKind::twice);
    EXPECT_EQ(planned.next(), FaultKind::twice);
    EXPECT_EQ(planned.next(), std::nullopt);
}

TEST(Faults, TheFirstRuleThatHitsWinsAndAllCount)
{
    Planned<3> planned{
        {parseFault("meas:1=twice"), parseFault("meas/0x17:2=silence"), parseFault("meas:1-=garbage")}};
    EXPECT_EQ(planned.next(), FaultKind::twice);
    EXPECT_EQ(planned.next(), FaultKind::silence);
    EXPECT_EQ(planned.next(), FaultKind::garbage);
    EXPECT_EQ(planned.counts[0], 3u);
    EXPECT_EQ(planned.counts[1], 3u);
    EXPECT_EQ(planned.counts[2], 3u);
}

TEST(Faults, DefaultsOfTheKinds)
{
    const std::pair<const char*, uint32_t> defaults[] = {{"late", 1000},       {"refuse", 1}, {"ret", 1},
                                                         {"wrong", 1},         {"stray", 1},  {"cut", 1},
                                                         {"oversized", 65535}, {"die", 100}};
    for (const auto& [kind, value] : defaults) {
        const FaultRule rule = makeFault("sys", "", 1, 1, 1, kind, {});
        std::atomic<uint32_t> count{0};
        const std::optional<Fault> fault = FaultPlan(1, {&rule, 1}, {&count, 1}).next(0, 1);
        ASSERT_TRUE(fault) << kind;
        EXPECT_EQ(fault->value, value) << kind;
        EXPECT_EQ(faultName(fault->kind), kind);
    }
}

// The draws of a run follow from the seed and the counts alone, so a plan made anew goes on where the old
// one ended: Planned makes one for every request.
TEST(Faults, SameSeedSameFaults)
{
    const auto draw = [](uint64_t seed) {
        Planned<1> planned{{parseFault("meas=random@0.5")}, {}, seed};
        std::vector<std::optional<FaultKind>> drawn;
        for (int i = 0; i < 1000; ++i)
            drawn.push_back(planned.next());
        return drawn;
    };
    const auto first = draw(7);
    EXPECT_EQ(draw(7), first);
    EXPECT_NE(draw(8), first);

    const auto none = std::count(first.begin(), first.end(), std::nullopt);
    EXPECT_GT(none, 400);
    EXPECT_LT(none, 600);
    for (int kind = 0; kind < 11; ++kind)
        EXPECT_GT(std::count(first.begin(), first.end(), static_cast<FaultKind>(kind)), 20) << kind;
    EXPECT_EQ(std::count(first.begin(), first.end(), FaultKind::random), 0);
}

TEST(Faults, TwoRulesDrawOnTheirOwn)
{
    Planned<2> planned{{parseFault("meas=silence@0.5"), parseFault("meas=twice@0.5")}};
    int none = 0;
    for (int i = 0; i < 1000; ++i)
        none += planned.next() ? 0 : 1;
    EXPECT_GT(none, 180);
    EXPECT_LT(none, 320);
}

TEST(Faults, RandomBytesFollowTheSeed)
{
    EXPECT_EQ(randomBytes(5, 0).size(), 0u);
    EXPECT_EQ(randomBytes(5, 1292), randomBytes(5, 1292));
    EXPECT_NE(randomBytes(5, 12), randomBytes(6, 12));
}

} // namespace
} // namespace vmeter

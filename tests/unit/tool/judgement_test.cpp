// Verdicts by the table of thresholds.
#include "measure/judgement.h"

#include <gtest/gtest.h>

using namespace tool;

namespace {

constexpr uint16_t kSignal = 0x0011;

// As the factory has band 1, and a record for levels alone.
std::vector<Threshold> table()
{
    Threshold uhf{};
    uhf.BAND = 1;
    uhf.MODULATION = 1;
    uhf.LV_LOW = 470;
    uhf.LV_HIGH = 900;
    uhf.CN_LOW = 200;
    uhf.CN_HIGH = 250;
    uhf.BER_LOW_MAN = 200;
    uhf.BER_LOW_EXP = -6;
    uhf.BER_HIGH_MAN = 100;
    uhf.BER_HIGH_EXP = -9;
    Threshold level{};
    level.BAND = 14;
    level.SPEC = 10;
    level.LV_LOW = 200;
    level.LV_HIGH = 1200;
    return {uhf, level};
}

MeasCondition condition(uint16_t band, uint16_t system)
{
    MeasCondition result{};
    result.usBand = band;
    result.usBdSys = system;
    return result;
}

MultiMeasResult locked(uint32_t LEVEL, uint32_t CNR, uint32_t BER_TOTAL, uint32_t BER_ERR)
{
    MultiMeasResult result{};
    result.lock = 1;
    result.stat = kSignal;
    result.MOD = 1;
    result.LEVEL = LEVEL;
    result.CNR = CNR;
    result.BER_TOTAL = BER_TOTAL;
    result.BER_ERR = BER_ERR;
    return result;
}

Judgement judged(const MultiMeasResult& result)
{
    return judge(table(), condition(1, 0), result);
}

TEST(Judgement, EdgesOfTheLevel)
{
    EXPECT_EQ(judged(locked(469, 300, 0, 0)).level, Verdict::fail);
    EXPECT_EQ(judged(locked(470, 300, 0, 0)).level, Verdict::pass);
    EXPECT_EQ(judged(locked(900, 300, 0, 0)).level, Verdict::pass);
    EXPECT_EQ(judged(locked(901, 300, 0, 0)).level, Verdict::fail);
    EXPECT_EQ(judged(locked(4294967295u, 300, 0, 0)).level, Verdict::fail);
}

TEST(Judgement, EdgesOfTheRatio)
{
    EXPECT_EQ(judged(locked(600, 199, 0, 0)).cnr, Verdict::fail);
    EXPECT_EQ(judged(locked(600, 200, 0, 0)).cnr, Verdict::marginal);
    EXPECT_EQ(judged(locked(600, 249, 0, 0)).cnr, Verdict::marginal);
    EXPECT_EQ(judged(locked(600, 250, 0, 0)).cnr, Verdict::pass);
}

TEST(Judgement, EdgesOfTheModulationErrorRatio)
{
    Threshold threshold = table().front();
    threshold.MER_LOW = 210;
    threshold.MER_HIGH = 260;
    const auto mer = [&](std::optional<double> merDb, uint8_t lock = 1) {
        MultiMeasResult result = locked(600, 300, 0, 0);
        result.lock = lock;
        return judgeBy(boundsOf({threshold}, condition(1, 0), result), condition(1, 0), result, merDb);
    };
    EXPECT_EQ(mer(20.99).mer, Verdict::fail);
    EXPECT_EQ(mer(20.99).whole, Verdict::fail);
    EXPECT_EQ(mer(21.0).mer, Verdict::marginal);
    EXPECT_EQ(mer(25.99).whole, Verdict::marginal);
    EXPECT_EQ(mer(26.0).mer, Verdict::pass);
    EXPECT_EQ(mer({}).mer, Verdict::none);
    EXPECT_EQ(mer(30, 0).mer, Verdict::none);
    threshold.MER_HIGH = 0;
    EXPECT_EQ(mer(1).mer, Verdict::none);
}

TEST(Judgement, BoundsOnBothSides)
{
    const Bounds slope{.marginalAbove = 6, .failAbove = 10};
    EXPECT_EQ(tool::judged(6, slope), Verdict::pass);
    EXPECT_EQ(tool::judged(6.1, slope), Verdict::marginal);
    EXPECT_EQ(tool::judged(10.1, slope), Verdict::fail);
    EXPECT_EQ(tool::judged(-100, slope), Verdict::pass);
    const Bounds both{.failBelow = -5, .failAbove = 5};
    EXPECT_EQ(tool::judged(-5.1, both), Verdict::fail);
    EXPECT_EQ(tool::judged(-5, both), Verdict::pass);
    EXPECT_EQ(tool::judged(1, {}), Verdict::none);
}

TEST(Judgement, BitErrors)
{
    EXPECT_EQ(judged(locked(600, 300, 0, 0)).ber, Verdict::none);
    EXPECT_EQ(judged(locked(600, 300, 1000, 0)).ber, Verdict::pass);
    EXPECT_EQ(judged(locked(600, 300, 1000000000, 3000)).ber, Verdict::fail); // 3e-6
    EXPECT_EQ(judged(locked(600, 300, 1000000000, 1000)).ber, Verdict::marginal);
    EXPECT_EQ(judged(locked(600, 300, 2000000000, 1)).ber, Verdict::pass); // 5e-10
}

TEST(Judgement, TheWorstCounts)
{
    EXPECT_EQ(judged(locked(600, 300, 1000, 0)).whole, Verdict::pass);
    EXPECT_EQ(judged(locked(600, 240, 1000, 0)).whole, Verdict::marginal);
    EXPECT_EQ(judged(locked(400, 240, 1000, 0)).whole, Verdict::fail);
}

TEST(Judgement, WithoutLock)
{
    MultiMeasResult result{};
    result.stat = kSignal;
    result.LEVEL = 600;
    const Judgement judgement = judged(result);
    EXPECT_EQ(judgement.level, Verdict::pass);
    EXPECT_EQ(judgement.cnr, Verdict::none);
    EXPECT_EQ(judgement.whole, Verdict::fail);
    result.stat = 0x0010;
    EXPECT_EQ(judged(result).whole, Verdict::none);
}

TEST(Judgement, OfALevelNeedsNoLock)
{
    MultiMeasResult result{};
    result.stat = kSignal;
    result.LEVEL = 600;
    const Judgement judgement = judge(table(), condition(14, 10), result);
    EXPECT_EQ(judgement.whole, Verdict::pass);
    EXPECT_EQ(judgement.cnr, Verdict::none);
}

TEST(Judgement, StrongWithoutLockIsNotRecognised)
{
    const auto found = [](uint16_t band, uint16_t system, uint16_t stat, uint32_t LEVEL) {
        MultiMeasResult result{};
        result.stat = stat;
        result.LEVEL = LEVEL;
        return judge(table(), condition(band, system), result).unrecognised;
    };
    constexpr uint16_t kNoSignal = 0x0010;
    EXPECT_FALSE(found(1, 0, kSignal, 469)); // weak: fails
    EXPECT_TRUE(found(1, 0, kSignal, 470));
    EXPECT_FALSE(found(1, 0, kNoSignal, 469));
    EXPECT_TRUE(found(1, 0, kNoSignal, 470));
    EXPECT_TRUE(found(1, 0, kNoSignal, 901));
    EXPECT_FALSE(judged(locked(600, 300, 1000, 0)).unrecognised);
    // Of a level carrier nothing is to be recognised.
    EXPECT_FALSE(found(14, 10, kSignal, 600));
    EXPECT_FALSE(found(14, 10, kNoSignal, 600));
    // Without a record, the signal tells.
    EXPECT_TRUE(found(2, 1, kSignal, 10));
    EXPECT_FALSE(found(2, 1, kNoSignal, 600));
}

TEST(Judgement, NoRecordNoVerdict)
{
    EXPECT_EQ(judge(table(), condition(0, 0), locked(600, 300, 0, 0)).whole, Verdict::pass); // no band
    EXPECT_EQ(judge(table(), condition(2, 0), locked(600, 300, 0, 0)).whole, Verdict::none);
    EXPECT_EQ(judge({}, condition(1, 0), locked(600, 300, 0, 0)).whole, Verdict::none);
    MultiMeasResult other = locked(600, 300, 0, 0);
    other.MOD = 1024;
    EXPECT_EQ(judged(other).whole, Verdict::none);
    other.MOD = 1;
    other.bdSys = 3; // found as another system than was asked for
    EXPECT_EQ(judged(other).whole, Verdict::none);
}

} // namespace

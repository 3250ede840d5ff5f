// The plan of a survey: what it comes to, and every mistake by its place.
#include "common/failure.h"
#include "survey/plan.h"
#include "survey/work.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace tool;

namespace {

const std::string kHead = "site = \"House\"\n";
const std::string kList = "[[list]]\nplan = \"uhf\"\nchannels = \"16,21-22\"\n";
const std::string kPoint = "[[point]]\nname = \"outlet 1\"\n";

bool begins(const std::string& text, const std::string& beginning)
{
    return text.starts_with(beginning);
}

class Plans : public ::testing::Test {
protected:
    Plans()
    {
        char name[] = "/tmp/vx63-plan-XXXXXX";
        m_folder = mkdtemp(name);
    }
    ~Plans() override { std::filesystem::remove_all(m_folder); }

    SurveyPlan read(const std::string& text)
    {
        std::ofstream(m_folder + "/p.toml") << text;
        return readPlan(m_folder + "/p.toml");
    }

    // "LINE: KEY: why" of a plan that is refused.
    std::string refusal(const std::string& text)
    {
        try {
            read(text);
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code(), kExitNoInput);
            EXPECT_EQ(failure.failed(), "cannot use the plan");
            EXPECT_EQ(failure.why().find(m_folder + "/p.toml:"), 0U);
            return failure.why().substr(m_folder.size() + 8);
        }
        return "";
    }

    // The same of a list with these lines, from line 5 on.
    std::string refusalOfList(const std::string& lines)
    {
        return refusal(kHead + kPoint + "[[list]]\n" + lines + "\n");
    }

    std::string m_folder;
};

TEST_F(Plans, ListsOfAllPointsAndOfOne)
{
    const SurveyPlan plan = read(kHead + R"(
by = "A"
note = "N"
lock_timeout_s = 2.5
[limits]
level_dbuv = { fail_below = 47, fail_above = 77 }
slope_db = { fail_above = 12 }
[[list]]
plan = "uhf"
channels = "16,21-22"
input = 0
capture = ["constellation", "delay-profile"]
limits = { slope_db = { fail_above = 6 }, mer_db = {} }
[[list]]
name = "pilots"
frequencies = ["70MHz", "451250"]
system = "level"
band = 11
supply = 2
input = 1
[[point]]
name = "outlet 1"
note = "kitchen"
[[point]]
name = "outlet 2"
[[point.list]]
plan = "CATV"
input = 1
system = "catv"
modulation = "256QAM"
)");
    EXPECT_EQ(plan.survey.site, "House");
    EXPECT_EQ(plan.survey.by, "A");
    EXPECT_EQ(plan.survey.note, "N");
    EXPECT_EQ(plan.lockTimeoutMs, 2500);
    ASSERT_EQ(plan.survey.points.size(), 2U);
    const SurveyPoint& first = plan.survey.points[0];
    EXPECT_EQ(first.name, "outlet 1");
    EXPECT_EQ(first.note, "kitchen");
    ASSERT_EQ(first.lists.size(), 2U);
    const SurveyList& uhf = first.lists[0];
    EXPECT_EQ(uhf.name, "uhf");
    EXPECT_EQ(uhf.input, 0U);
    EXPECT_EQ(uhf.slope.failAbove, 6);
    ASSERT_EQ(uhf.channels.size(), 3U);
    EXPECT_EQ(uhf.channels[0].name, "16");
    EXPECT_EQ(uhf.channels[0].frequencyKhz, 491143U);
    EXPECT_EQ(uhf.channels[2].name, "22");
    EXPECT_TRUE(uhf.channels[2].expected);
    const ListOrders& orders = plan.orders[0][0];
    EXPECT_TRUE(orders.constellation && orders.delayProfile);
    EXPECT_EQ(orders.limits.level->failBelow, 47);
    EXPECT_EQ(orders.limits.mer->failBelow, std::nullopt);
    EXPECT_FALSE(orders.limits.cnr);
    const SurveyList& pilots = first.lists[1];
    EXPECT_EQ(pilots.input, 1U);
    EXPECT_EQ(pilots.slope.failAbove, 12);
    ASSERT_EQ(pilots.channels.size(), 2U);
    EXPECT_EQ(pilots.channels[1].name, "451.25");
    EXPECT_TRUE(pilots.channels[1].expected);
    const MeasCondition& condition = pilots.channels[1].ways.at(0);
    EXPECT_EQ(condition.ulFreq, 451250U);
    EXPECT_EQ(condition.usBdSys, VX63_BDSYS_LEVEL);
    EXPECT_EQ(condition.usBand, 11);
    EXPECT_EQ(condition.powerSupply, 2);
    const SurveyList& catv = plan.survey.points[1].lists.at(0);
    EXPECT_EQ(catv.name, "catv");
    EXPECT_FALSE(catv.channels[0].expected);
    EXPECT_EQ(catv.channels[0].ways.size(), 1U);
    EXPECT_EQ(catv.channels[0].ways[0].usMod, VX63_MOD_256QAM);
}

TEST_F(Plans, AChannelOfACableCanBeOccupiedInTwoWays)
{
    const SurveyPlan plan = read(kHead + kPoint + "[[list]]\nplan = \"catv\"\nchannels = \"1\"\n");
    const std::vector<SurveyChannel>& channels = plan.survey.points[0].lists[0].channels;
    ASSERT_EQ(channels.size(), 1U);
    EXPECT_EQ(channels[0].frequencyKhz, 93000U);
    ASSERT_EQ(channels[0].ways.size(), 2U);
    EXPECT_EQ(channels[0].ways[1].ulFreq, 93143U);
    EXPECT_EQ(plan.lockTimeoutMs, 10000);
}

TEST_F(Plans, MistakesOfThePlan)
{
    EXPECT_EQ(refusal("site = "), "1: syntax: Error while parsing key-value pair: encountered end-of-file");
    EXPECT_EQ(refusal(kList + kPoint), "1: site: is missing");
    EXPECT_EQ(refusal("site = \"\"\n" + kList + kPoint), "1: site: must not be empty");
    EXPECT_EQ(refusal(kHead + "owner = 1\n"), "2: owner: unknown key; known here: site, by, note, "
                                              "lock_timeout_s, limits, list, point");
    EXPECT_EQ(refusal(kHead + "lock_timeout_s = -1\n"), "2: lock_timeout_s: must be 0 to 3600, is -1");
    EXPECT_EQ(refusal(kHead + kList), "1: point: is missing: where is it measured?");
    EXPECT_EQ(refusal(kHead + kPoint), "2: point.list: is missing, here and at the top: what is measured?");
    EXPECT_EQ(refusal(kHead + kList + "[[point]]\n"), "5: point.name: is missing");
    EXPECT_EQ(refusal(kHead + kList + "[[point]]\nname = \"\"\n"), "6: point.name: must not be empty");
    EXPECT_EQ(refusal(kHead + kList + kPoint + kPoint),
              "8: point.name: a point of the name 'outlet 1' stands before");
    EXPECT_EQ(refusal(kHead + kList + kList + kPoint),
              "5: list.name: a list of the name 'uhf' stands before");
    EXPECT_EQ(refusal(kHead + kList + kPoint + "place = 1\n"),
              "7: point.place: unknown key; known here: name, note, list");
    EXPECT_EQ(refusal(kHead + kList + kPoint +
                      "[[point]]\nname = \"outlet 2\"\n[[point.list]]\nplan = \"bs\"\ninput = 1\n"),
              "2: list: some lists have an input, others do not: give it in all of them, or in none");
}

TEST_F(Plans, MistakesOfALimit)
{
    const auto refused = [this](const std::string& line) { return refusal(kHead + "[limits]\n" + line); };
    EXPECT_EQ(refused("level = {}"),
              "3: limits.level: unknown key; known here: level_dbuv, cnr_db, mer_db, ber, slope_db");
    EXPECT_EQ(refused("cnr_db = 20"), "3: limits.cnr_db: must be a table, not integer");
    EXPECT_EQ(refused("cnr_db = { below = 20 }"),
              "3: limits.cnr_db.below: unknown key; known here: fail_below, "
              "marginal_below, marginal_above, fail_above");
    EXPECT_EQ(refused("ber = { fail_above = 2 }"), "3: limits.ber.fail_above: must be 0 to 1, is 2");
    EXPECT_EQ(refused("cnr_db = { fail_below = 20, marginal_below = 19 }"),
              "3: limits.cnr_db.marginal_below: is below fail_below: nothing would be marginal");
    EXPECT_EQ(refused("ber = { fail_above = 1e-4, marginal_above = 1e-3 }"),
              "3: limits.ber.marginal_above: is above fail_above: nothing would be marginal");
    EXPECT_EQ(refused("level_dbuv = { fail_below = 77, fail_above = 47 }"),
              "3: limits.level_dbuv: leaves no value that passes");
    EXPECT_EQ(refusalOfList("plan = \"uhf\"\nlimits = { mer_db = { fail_below = -1 } }"),
              "6: list.limits.mer_db.fail_below: must be 0 to 100, is -1");
}

TEST_F(Plans, MistakesOfAList)
{
    EXPECT_EQ(refusalOfList(""), "4: list.plan: is missing, and so is frequencies");
    EXPECT_EQ(refusalOfList("plan = \"uhf\"\nfrequencies = []"),
              "6: list.frequencies: stands beside a plan: leave out one of them");
    EXPECT_EQ(refusalOfList("frequencies = [\"70MHz\"]\nchannels = \"1\""),
              "6: list.channels: there is no plan that has them");
    EXPECT_EQ(refusalOfList("plan = \"uhf\"\nband = 1"), "6: list.band: the plan tells it");
    EXPECT_PRED2(begins, refusalOfList("plan = \"uhf\"\nchannel = 1"), "6: list.channel: unknown k");
    EXPECT_PRED2(begins, refusalOfList("plan = \"vhf\""), "5: list.plan: 'vhf' is none of uhf, bs, cs, bs");
    EXPECT_EQ(refusalOfList("plan = \"uhf\"\nchannels = \"16,99\""),
              "6: list.channels: cannot tune channel '99': plan uhf has none of that name");
    EXPECT_EQ(refusalOfList("plan = \"uhf\"\nchannels = 16"),
              "6: list.channels: must be a string, not integer");
    EXPECT_EQ(refusalOfList("plan = \"uhf\"\nname = \"\""), "6: list.name: must not be empty");
    EXPECT_EQ(refusalOfList("plan = \"uhf\"\ninput = 2"), "6: list.input: must be 0 to 1, is 2");
    EXPECT_EQ(refusalOfList("plan = \"uhf\"\nexpected = 1"),
              "6: list.expected: must be true or false, not integer");
    EXPECT_PRED2(begins, refusalOfList("plan = \"uhf\"\nsystem = \"moon\""),
                 "6: list.system: 'moon' is none of terres");
    EXPECT_PRED2(begins, refusalOfList("plan = \"uhf\"\nmodulation = \"am\""),
                 "6: list.modulation: 'am' is none of OFDM");
    EXPECT_EQ(refusalOfList("plan = \"uhf\"\nsupply = 5"), "6: list.supply: must be 0 to 4, is 5");
    EXPECT_PRED2(begins, refusalOfList("plan = \"uhf\"\nlo = \"far\""),
                 "6: list.lo: 'far' is not a frequency in whole k");
    EXPECT_EQ(refusalOfList("frequencies = [\"70MHz\"]"), "4: list.name: is missing");
}

TEST_F(Plans, MistakesOfChannels)
{
    const std::string name = "name = \"f\"\n";
    EXPECT_EQ(refusalOfList(name + "frequencies = [70]"), "6: list.frequencies: must be an array of strings");
    EXPECT_EQ(refusalOfList(name + "frequencies = []"), "6: list.frequencies: must be at least one");
    EXPECT_PRED2(begins, refusalOfList(name + "frequencies = [\"70MHz\", \"x\"]"),
                 "6: list.frequencies: 'x' is not a frequency ");
    EXPECT_EQ(refusalOfList(name + "frequencies = [\"70MHz\", \"70000\"]"),
              "6: list.frequencies: channel 70 stands there twice");
    EXPECT_PRED2(begins, refusalOfList(name + "frequencies = [\"5MHz\"]"),
                 "6: list.frequencies: channel 5: 5 MHz is outside 10..3224 MHz of the tune");
    EXPECT_PRED2(begins, refusalOfList("plan = \"uhf\"\nlo = \"10GHz\""),
                 "6: list.lo: channel 13: the local oscillator, 10000 MHz");
    EXPECT_EQ(refusalOfList("plan = \"uhf\"\nmodulation = \"64QAM\""),
              "6: list.modulation: channel 13: 64QAM is no modulation of terrestrial, which has OFDM");
    EXPECT_EQ(refusalOfList("plan = \"uhf\"\ncapture = [\"photo\"]"),
              "6: list.capture: 'photo' is none of constellation, delay-profile");
    EXPECT_EQ(refusalOfList("plan = \"bs\"\ncapture = [\"delay-profile\"]"),
              "6: list.capture: a delay profile is of terrestrial (OFDM) alone");
    EXPECT_EQ(refusalOfList("plan = \"fm\"\ncapture = [\"constellation\"]"),
              "6: list.capture: a level carrier has no constellation");
}

// A plan of a megabyte can ask for more than any memory holds.
TEST_F(Plans, ChannelsHaveAnEnd)
{
    std::string list = kHead + "[[list]]\nname = \"x\"\nfrequencies = [";
    for (int khz = 100000; khz < 101000; ++khz)
        list += "\"" + std::to_string(khz) + "\",";
    list += "]\n";
    std::string points;
    for (int i = 1; i <= 100; ++i)
        points += "[[point]]\nname = \"" + std::to_string(i) + "\"\n";
    EXPECT_EQ(read(list + points).survey.points.size(), 100U);
    EXPECT_EQ(refusal(list + points + kPoint),
              "205: point.list: comes to more than 100000 channels with those of the points before");
}

TEST_F(Plans, WhatIsMeasuredIsNotLeft)
{
    const SurveyPlan plan =
        read(kHead + kList + kPoint + "[[point]]\nname = \"a, b\"\n[[point]]\nname = \"c\"\n");
    SurveyReading reading;
    reading.point = "outlet 1";
    reading.list = "uhf";
    reading.reading.channel = "21";
    reading.reading.condition.ulFreq = 521143;
    const std::vector<Work> all = workOf(plan, "", {reading}, false);
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0].all, 3U);
    ASSERT_EQ(all[0].left.size(), 2U);
    EXPECT_EQ(all[0].left[0].channel->name, "16");
    EXPECT_EQ(all[0].left[1].channel->name, "22");
    EXPECT_EQ(all[1].left.size(), 3U);
    EXPECT_EQ(workOf(plan, "outlet 1", {reading}, true).at(0).left.size(), 3U);
    const std::vector<Work> named = workOf(plan, "c, a, b", {}, false);
    ASSERT_EQ(named.size(), 2U);
    EXPECT_EQ(named[0].point->name, "a, b");
    EXPECT_EQ(named[0].number, 2U);
    EXPECT_EQ(named[1].point->name, "c");
    try {
        workOf(plan, "c,d", {}, false);
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.code(), kExitUsage);
        EXPECT_STREQ(failure.what(), "cannot measure at 'd': the plan has no point of that name: "
                                     "it has outlet 1, a, b, c");
    }
}

} // namespace

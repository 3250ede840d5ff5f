// The results of a survey on disk and what they come to.
#include "common/failure.h"
#include "survey/outcome.h"
#include "survey/results.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace tool;

namespace {

const std::string kSurvey =
    R"({"kind":"survey","time":1700000000.5,"site":"House","by":"A","note":"","meter":{"model":"VX63",)"
    R"("serial":"000123","version":"1.0","angle_calibration":4},"points":[{"point":"outlet 1","note":"kitchen",)"
    R"("lists":[{"list":"uhf","input":0,"slope_db":{"fail_below":null,"marginal_below":null,"marginal_above":6.0,)"
    R"("fail_above":12.0,"of_plan":true},"channels":[{"channel":"21","frequency_khz":521143,"expected":true},)"
    R"({"channel":"22","frequency_khz":527143,"expected":true},)"
    R"({"channel":"23","frequency_khz":533143,"expected":false}]}]}]})"
    "\n";

Survey survey()
{
    Survey survey{1700000000500, "House", "A", "", {"VX63", "000123", "1.0", 4}, {}};
    SurveyList list{"uhf", 0, {.marginalAbove = 6, .failAbove = 12, .ofPlan = true}, {}};
    list.channels = {{"21", 521143, {}, true}, {"22", 527143, {}, true}, {"23", 533143, {}, false}};
    survey.points = {{"outlet 1", "kitchen", {list}}};
    return survey;
}

SurveyReading reading(const char* channel, uint32_t khz, uint32_t LEVEL, uint16_t stat = VX63_STAT_SIGNAL)
{
    SurveyReading one;
    one.point = "outlet 1";
    one.list = "uhf";
    one.reading.timeMs = 1700000001250;
    one.reading.channel = channel;
    one.reading.condition.ulFreq = khz;
    one.reading.input = 0;
    one.reading.result.lock = stat != 0;
    one.reading.result.stat = stat;
    one.reading.result.LEVEL = LEVEL;
    one.reading.result.CNR = 251;
    one.reading.judgement.whole = stat != 0 ? Verdict::pass : Verdict::none;
    return one;
}

class Results : public ::testing::Test {
protected:
    Results()
    {
        char name[] = "/tmp/vx63-results-XXXXXX";
        m_folder = mkdtemp(name);
    }
    ~Results() override { std::filesystem::remove_all(m_folder); }

    SurveyResults read(const std::string& text)
    {
        std::ofstream(m_folder + "/results.jsonl") << text;
        return readResults(m_folder);
    }

    // What it is refused for.
    std::string refusal(const std::string& text)
    {
        try {
            read(text);
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code(), kExitData);
            return failure.why();
        }
        return "";
    }

    std::string m_folder;
};

TEST_F(Results, LineOfASurvey)
{
    EXPECT_EQ(surveyLine(survey()), kSurvey);
    const Survey read = this->read(kSurvey).survey;
    EXPECT_EQ(surveyLine(read), kSurvey);
}

TEST_F(Results, AReadingComesBackAsItWas)
{
    SurveyReading one = reading("21", 521143, 612);
    one.reading.result.TSID = 0x7FE0;
    one.reading.result.BER_TOTAL = 1000;
    one.reading.result.BER_ERR = 3;
    one.reading.result.MOD = 1;
    one.reading.supply = 2;
    one.reading.widthKhz = 6000;
    one.reading.judgement.cnr = Verdict::marginal;
    one.reading.judgement.mer = Verdict::pass;
    one.merDb = 27.2;
    one.bounds.level = {.failBelow = 47, .failAbove = 90, .ofPlan = true};
    one.constellation = {{-128, 127}, {0, -1}};
    one.delayProfile.assign(VX63_DLYPRF_SAMPLES, -128);
    one.trouble = "no lock";
    const std::string line = readingLine(one);
    EXPECT_EQ(
        line.substr(0, 120),
        R"({"kind":"reading","point":"outlet 1","list":"uhf","time":1700000001.25,"channel":"21","frequency_khz":521143,"lo_khz":0,)");
    EXPECT_NE(line.find(R"("asked_system_code":0,"width_khz":6000,"mer_db":27.2,"mer_verdict":"pass",)"
                        R"("limits":{"level_dbuv":{"fail_below":47.0,"marginal_below":null,)"
                        R"("marginal_above":null,"fail_above":90.0,"of_plan":true},"cnr_db":{)"),
              std::string::npos);
    EXPECT_NE(line.find(R"("constellation":[[-128,127],[0,-1]],"delay_profile":[-128,-128,)"),
              std::string::npos);
    const SurveyResults results = read(kSurvey + line);
    ASSERT_EQ(results.readings.size(), 1U);
    EXPECT_EQ(readingLine(results.readings.front()), line);
}

TEST_F(Results, TheLastOfAChannelHoldsInTheOrderOfTheSurvey)
{
    const std::string lines = readingLine(reading("22", 527143, 600)) +
                              readingLine(reading("21", 521143, 500)) +
                              readingLine(reading("22", 527143, 555)) + readingLine(reading("99", 527143, 1));
    const SurveyResults results = read(kSurvey + lines);
    ASSERT_EQ(results.readings.size(), 2U);
    EXPECT_EQ(results.readings[0].reading.channel, "21");
    EXPECT_EQ(results.readings[1].reading.result.LEVEL, 555U);
    EXPECT_EQ(results.strangers, 1U);
}

TEST_F(Results, ALineThatIsCutShortIsNoReading)
{
    const std::string line = readingLine(reading("21", 521143, 500));
    EXPECT_EQ(read(kSurvey + line.substr(0, line.size() / 2)).readings.size(), 0U);
    EXPECT_EQ(read(kSurvey + line.substr(0, line.size() - 1)).readings.size(), 0U);
}

TEST_F(Results, WhatIsNoResults)
{
    EXPECT_EQ(refusal(""), "no survey is in it");
    EXPECT_EQ(refusal(kSurvey + "{\n"), "line 2 is no JSON");
    EXPECT_EQ(refusal(kSurvey + "[]\n"), "line 2: 'kind' is looked for in what is no object");
    EXPECT_EQ(refusal(kSurvey + R"({"kind":"reading","point":5})" + "\n"), "line 2: 'point' is no text");
    EXPECT_EQ(refusal(R"({"kind":"survey","time":-1})"
                      "\n"),
              "line 1: 'time' is no time");
    std::string line = readingLine(reading("21", 521143, 500));
    line.replace(line.find("521143"), 6, "1e300");
    EXPECT_EQ(refusal(kSurvey + line), "line 2: 'frequency_khz' is no such number");
    EXPECT_EQ(read(kSurvey + R"({"kind":"what comes later"})" + "\n").readings.size(), 0U);
}

TEST_F(Results, NotThere)
{
    EXPECT_THROW(readResults(m_folder), Failure);
    EXPECT_THROW(readResults(m_folder + "/none"), Failure);
}

TEST(Outcome, OfChannelsPointsAndTheWhole)
{
    SurveyResults results{survey(), {reading("21", 521143, 612), reading("22", 527143, 500)}, 0};
    SurveyOutcome outcome = outcomeOf(results);
    EXPECT_EQ(outcome.verdict, Verdict::marginal); // the slope
    EXPECT_EQ(outcome.counts.all, 3U);
    EXPECT_EQ(outcome.counts.measured, 2U);
    EXPECT_EQ(outcome.counts.passed, 2U);
    const ListOutcome& list = outcome.points[0].lists[0];
    EXPECT_DOUBLE_EQ(*list.slopeDb, 11.2);
    EXPECT_EQ(list.strongest, "21");
    EXPECT_EQ(list.weakest, "22");
    EXPECT_EQ(list.channels[2].reading, nullptr);

    results.readings[1].reading.result.LEVEL = 491;
    EXPECT_EQ(outcomeOf(results).verdict, Verdict::fail);
}

TEST(Outcome, WithoutASignal)
{
    const SurveyResults results{survey(), {reading("21", 521143, 0, 0), reading("23", 533143, 0, 0)}, 0};
    const SurveyOutcome outcome = outcomeOf(results);
    const auto& channels = outcome.points[0].lists[0].channels;
    EXPECT_EQ(channels[0].verdict, Verdict::fail);
    EXPECT_EQ(channels[0].why, "no signal");
    EXPECT_EQ(channels[2].verdict, Verdict::none); // not expected
    EXPECT_EQ(channels[2].why, "no signal");
    EXPECT_EQ(outcome.counts.failed, 1U);
    EXPECT_EQ(outcome.counts.unjudged(), 1U);
    EXPECT_FALSE(outcome.points[0].lists[0].slopeDb);
}

TEST(Outcome, OfAnExpectedChannelWithoutLockAndLimits)
{
    SurveyReading one = reading("21", 521143, 600);
    one.reading.result.lock = 0;
    one.reading.judgement.whole = Verdict::none;
    const SurveyResults results{survey(), {one}, 0};
    EXPECT_EQ(outcomeOf(results).points[0].lists[0].channels[0].verdict, Verdict::fail);
    EXPECT_EQ(outcomeOf(results).points[0].lists[0].channels[0].why, "no lock");
}

TEST(Outcome, LockIsNotAllThatAWeakChannelLacks)
{
    SurveyReading one = reading("21", 521143, 400);
    one.reading.result.lock = 0;
    one.reading.judgement.level = Verdict::fail;
    one.reading.judgement.whole = Verdict::fail;
    const SurveyResults results{survey(), {one}, 0};
    EXPECT_EQ(outcomeOf(results).points[0].lists[0].channels[0].why, "level, no lock");
}

} // namespace

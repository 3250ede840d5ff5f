// What reports and comparisons make of two surveys.
#include "survey/compare.h"
#include "survey/reports.h"
#include "survey/words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tool;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

// Two points with a list of three channels; the last one is not expected to be there.
SurveyResults results()
{
    SurveyResults results;
    results.survey = {1700000000000, "House", "A", "", {"VX63", "000123", "1.0", 4}, {}};
    for (const char* point : {"outlet 1", "outlet 2"}) {
        SurveyList list{"uhf", 0, {.failAbove = 12}, {}};
        list.channels = {{"21", 521143, {}, true}, {"22", 527143, {}, true}, {"23", 533143, {}, false}};
        results.survey.points.push_back({point, "", {list}});
        for (const SurveyChannel& channel : list.channels) {
            SurveyReading one;
            one.point = point;
            one.list = "uhf";
            one.reading.timeMs = 1700000001000;
            one.reading.channel = channel.name;
            one.reading.condition.ulFreq = channel.frequencyKhz;
            one.reading.input = 0;
            if (channel.expected) {
                one.reading.result.lock = 1;
                one.reading.result.stat = VX63_STAT_SIGNAL;
                one.reading.result.LEVEL = 623;
                one.reading.result.CNR = 301;
                one.reading.result.BER_TOTAL = 1000000;
                one.reading.judgement = {Verdict::pass, Verdict::pass, Verdict::none, Verdict::pass,
                                         Verdict::pass};
                one.merDb = 30;
            }
            one.bounds.level = {.failBelow = 47};
            results.readings.push_back(one);
        }
    }
    return results;
}

// "outlet 1/uhf/21 level_dbuv 62.3 dBuV -> 61.3 dBuV worse".
std::vector<std::string> differences(const SurveyResults& before, const SurveyResults& after, double by = 1)
{
    std::vector<std::string> lines;
    for (const SurveyDifference& one : compareSurveys(outcomeOf(before), outcomeOf(after), by).differences)
        lines.push_back(one.point + "/" + one.list + "/" + one.channel + " " + one.quantity + " " +
                        one.beforeText + " -> " + one.afterText +
                        (one.kind == Change::worse    ? " worse"
                         : one.kind == Change::better ? " better"
                         : one.kind == Change::gone   ? " gone"
                                                      : " added"));
    return lines;
}

TEST(Comparison, OfASurveyWithItself)
{
    EXPECT_THAT(differences(results(), results()), IsEmpty());
    EXPECT_EQ(compareSurveys(outcomeOf(results()), outcomeOf(results()), 1).compared, 6U);
}

TEST(Comparison, Levels)
{
    SurveyResults after = results();
    after.readings[0].reading.result.LEVEL = 614; // 0.9 dB less
    EXPECT_THAT(differences(results(), after), IsEmpty());
    after.readings[0].reading.result.LEVEL = 613;
    EXPECT_THAT(differences(results(), after),
                ElementsAre("outlet 1/uhf/21 level_dbuv 62.3 dBuV -> 61.3 dBuV worse",
                            "outlet 1/uhf/ slope_db 0.0 dB -> 1.0 dB worse"));
    EXPECT_THAT(differences(results(), after, 1.1), IsEmpty());
    EXPECT_THAT(differences(after, results()),
                ElementsAre("outlet 1/uhf/21 level_dbuv 61.3 dBuV -> 62.3 dBuV better",
                            "outlet 1/uhf/ slope_db 1.0 dB -> 0.0 dB better"));
}

TEST(Comparison, Ratios)
{
    SurveyResults after = results();
    after.readings[0].reading.result.CNR = 280;
    after.readings[0].merDb = 28.5;
    EXPECT_THAT(differences(results(), after),
                ElementsAre("outlet 1/uhf/21 cnr_db 30.1 dB -> 28.0 dB worse",
                            "outlet 1/uhf/21 mer_db 30.0 dB -> 28.5 dB worse"));
    after.readings[0].merDb.reset();
    EXPECT_THAT(differences(results(), after),
                ElementsAre("outlet 1/uhf/21 cnr_db 30.1 dB -> 28.0 dB worse"));
}

TEST(Comparison, BitErrorRates)
{
    SurveyResults before = results();
    SurveyResults after = results();
    before.readings[0].reading.result.BER_ERR = 2;
    after.readings[0].reading.result.BER_ERR = 19;
    EXPECT_THAT(differences(before, after), IsEmpty());
    after.readings[0].reading.result.BER_ERR = 20;
    EXPECT_THAT(differences(before, after), ElementsAre("outlet 1/uhf/21 ber 2.0e-06 -> 2.0e-05 worse"));
    EXPECT_THAT(differences(after, before), ElementsAre("outlet 1/uhf/21 ber 2.0e-05 -> 2.0e-06 better"));
    // None of a million: no more than 1e-6.
    before.readings[0].reading.result.BER_ERR = 0;
    after.readings[0].reading.result.BER_ERR = 9;
    EXPECT_THAT(differences(before, after), IsEmpty());
    after.readings[0].reading.result.BER_ERR = 10;
    EXPECT_THAT(differences(before, after), ElementsAre("outlet 1/uhf/21 ber < 1.0e-06 -> 1.0e-05 worse"));
}

TEST(Comparison, VerdictsAndLostSignals)
{
    SurveyResults after = results();
    after.readings[0].reading.judgement.cnr = Verdict::marginal;
    after.readings[0].reading.judgement.whole = Verdict::marginal;
    EXPECT_THAT(differences(results(), after),
                ElementsAre("outlet 1/uhf/21 verdict pass -> marginal: C/N worse"));
    after.readings[0].reading.result = {};
    after.readings[0].reading.judgement = {};
    EXPECT_THAT(differences(results(), after),
                ElementsAre("outlet 1/uhf/21 verdict pass -> fail: no signal worse",
                            "outlet 1/uhf/21 signal yes -> no worse"));
    EXPECT_THAT(differences(after, results()),
                ElementsAre("outlet 1/uhf/21 verdict fail: no signal -> pass better",
                            "outlet 1/uhf/21 signal no -> yes better"));
}

TEST(Comparison, WhatOneOfThemHasNotMeasured)
{
    SurveyResults after = results();
    after.readings.erase(after.readings.begin());
    after.survey.points[1].name = "outlet 3";
    for (size_t i = 2; i < after.readings.size(); ++i)
        after.readings[i].point = "outlet 3";
    EXPECT_THAT(
        differences(results(), after),
        ElementsAre("outlet 1/uhf/21 measured yes -> no gone", "outlet 2/uhf/21 measured yes -> no gone",
                    "outlet 2/uhf/22 measured yes -> no gone", "outlet 2/uhf/23 measured yes -> no gone",
                    "outlet 3/uhf/21 measured no -> yes added", "outlet 3/uhf/22 measured no -> yes added",
                    "outlet 3/uhf/23 measured no -> yes added"));
}

TEST(Words, NamesInARow)
{
    EXPECT_EQ(namesText({"13", "14", "15", "17", "19", "20", "BS-1", "07", "08", "09"}),
              "13-15, 17, 19, 20, BS-1, 07, 08, 09");
    EXPECT_EQ(namesText({}), "");
}

TEST(Words, OfAChannel)
{
    SurveyResults some = results();
    some.readings[0].reading.judgement.whole = Verdict::none;
    some.readings.pop_back();
    const SurveyOutcome outcome = outcomeOf(some);
    const auto& channels = outcome.points[0].lists[0].channels;
    EXPECT_EQ(verdictText(channels[0]), "not judged");
    EXPECT_EQ(verdictText(channels[1]), "pass");
    EXPECT_EQ(verdictText(channels[2]), "no signal");
    EXPECT_EQ(verdictText(outcome.points[1].lists[0].channels[2]), "not measured");
    EXPECT_EQ(summaryText(outcome),
              "pass: incomplete, 1 of 6 channels is not measured: 3 pass, 2 not judged");
}

TEST(Words, OfAStrongSignalThatIsNone)
{
    SurveyResults some = results();
    some.readings[2].reading.judgement.unrecognised = true;
    const SurveyOutcome outcome = outcomeOf(some);
    const ChannelOutcome& channel = outcome.points[0].lists[0].channels[2];
    EXPECT_STREQ(verdictWord(channel), "not judged");
    EXPECT_EQ(verdictText(channel), "not recognised");
    EXPECT_FALSE(isSilent(channel));
}

TEST(Report, HostileTexts)
{
    SurveyResults hostile = results();
    const std::string name = "<script>\"&\x01\xff";
    hostile.survey.site = name + "</style>";
    hostile.survey.by = name;
    hostile.survey.note = name + "\nline 2";
    hostile.survey.points[0].lists[0].channels[0].name = name;
    hostile.readings[0].reading.channel = name;
    hostile.readings[0].trouble = name;
    const SurveyOutcome outcome = outcomeOf(hostile);
    const std::string html = reportHtml(hostile, outcome);
    EXPECT_THAT(html, HasSubstr("<td>&lt;script&gt;&quot;&amp;\\x01\\xFF<br>line 2</td>"));
    EXPECT_THAT(
        html, HasSubstr("Survey\\20 of\\20 \\3C script\\3E \\22 \\26 \\5C x01\\5C xFF\\3C \\2F style\\3E "));
    EXPECT_THAT(html, Not(HasSubstr("<script>")));
    EXPECT_EQ(html.find("</style>"), html.rfind("</style>"));
    EXPECT_THAT(junitXml(hostile, outcome),
                HasSubstr("<testsuites name=\"&lt;script&gt;&quot;&amp;\\x01\\xFF&lt;/style&gt;\""));
    EXPECT_THAT(readingsCsv(outcome), HasSubstr("\"<script>\"\"&\\x01\\xFF\""));
}

TEST(Report, LimitsAreToldOnce)
{
    SurveyResults some = results();
    some.readings[4].bounds.level.failBelow = 50; // channel 22 at outlet 2
    const std::string html = reportHtml(some, outcomeOf(some));
    EXPECT_THAT(html,
                HasSubstr("<th scope=\"row\">uhf</th><td>terrestrial</td><td>Level\u00A0(dB\u00B5V)</td>"
                          "<td class=\"n\">47</td>"));
    EXPECT_THAT(html, HasSubstr("<th scope=\"row\">uhf (outlet 2)</th><td>terrestrial</td>"
                                "<td>Level\u00A0(dB\u00B5V)</td><td class=\"n\">50</td>"));
    EXPECT_THAT(html, HasSubstr("<td>all</td><td>Slope\u00A0(dB)</td>"));
}

} // namespace

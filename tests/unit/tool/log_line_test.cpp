// One line of the library's log: taken apart, judged, shown.
#include "log/line.h"

#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <string>

using namespace tool;

namespace {

const std::string kStart = "1700000000.012345 : demo : libvx63.cpp(42) vx63_init() : Start.";

bool tellsOfFailure(const std::string& message)
{
    const std::string text = "1.000000 : demo : libvx63.cpp(1) f() : " + message;
    const auto line = parseLogLine(text);
    return line && isFailure(*line);
}

TEST(LogLine, FieldsAreTakenApart)
{
    const auto line = parseLogLine(kStart);
    ASSERT_TRUE(line);
    EXPECT_EQ(line->seconds, 1700000000);
    EXPECT_EQ(line->microseconds, 12345u);
    EXPECT_EQ(line->program, "demo");
    EXPECT_EQ(line->file, "libvx63.cpp");
    EXPECT_EQ(line->line, 42u);
    EXPECT_EQ(line->function, "vx63_init");
    EXPECT_EQ(line->message, "Start.");
}

TEST(LogLine, MessageMayBeEmptyAndMayLookLikeFields)
{
    const auto empty = parseLogLine("1.000000 : p : f.cpp(1) g() : ");
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->message, "");
    const auto nested = parseLogLine("1.000000 : p : f.cpp(1) g() : x : h.cpp(2) i() : y");
    ASSERT_TRUE(nested);
    EXPECT_EQ(nested->function, "g");
    EXPECT_EQ(nested->message, "x : h.cpp(2) i() : y");
}

TEST(LogLine, ProgramMayHaveAnyName)
{
    const auto line = parseLogLine("1.000000 : my : odd (1) program : f.cpp(1) g() : m");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->program, "my : odd (1) program");
    EXPECT_EQ(line->file, "f.cpp");
}

TEST(LogLine, EveryLineThatIsCutShortIsNone)
{
    for (size_t length = 0; length < kStart.find("Start."); ++length)
        EXPECT_FALSE(parseLogLine(kStart.substr(0, length))) << length;
}

TEST(LogLine, YearsMayBeBeyondAnInteger)
{
    setenv("TZ", "UTC", 1);
    tzset();
    EXPECT_EQ(logLineText("67768036191676799.000000 : p : f(1) g() : m"),
              "2147485547-12-31 23:59:59.000000 : p : f(1) g() : m");
}

TEST(LogLine, ALongLineIsReadInOnePass)
{
    std::string place, line, function; // half a minute for who looks on to the end at each beginning
    for (size_t i = 0; i < (1 << 17); ++i) {
        place += " : ";
        line += " : a(";
        function += " : a(1) ";
    }
    for (const std::string& text : {place, line, function})
        EXPECT_FALSE(parseLogLine("1.000000" + text));
}

TEST(LogLine, OtherTextsAreNone)
{
    for (const char* text :
         {"", " : ", "hello", "x.000000 : p : f.cpp(1) g() : m", "1.00000 : p : f.cpp(1) g() : m",
          "1.0000000 : p : f.cpp(1) g() : m", "-1.000000 : p : f.cpp(1) g() : m",
          "1.-00001 : p : f.cpp(1) g() : m", "1.000000 : p : f.cpp(-1) g() : m",
          "1.000000 : p : f.cpp() g() : m", "1.000000 : p : f.cpp(1) () : m",
          "1.000000 : p : f.cpp(1) g h() : m", "1.000000 : p : f.cpp(4294967296) g() : m",
          "9223372036854775808.000000 : p : f.cpp(1) g() : m", ".000000 : p : f.cpp(1) g() : m"})
        EXPECT_FALSE(parseLogLine(text)) << text;
}

TEST(LogLine, FailuresAreToldFromOtherLines)
{
    EXPECT_TRUE(tellsOfFailure("arg error. input=2"));
    EXPECT_TRUE(tellsOfFailure("arg error. powerSupply=9 -> VX63_POWER_SUPPLY_OFF"));
    EXPECT_TRUE(tellsOfFailure("lmsgrcvMq() timeout error. lmsg_err=-4"));
    EXPECT_TRUE(tellsOfFailure("ret error. usOptOrRet=0004"));
    EXPECT_TRUE(tellsOfFailure("subcpu communication error. vx63_err=-1"));
    EXPECT_TRUE(tellsOfFailure("buzzer repeating. vx63_err=-6"));
    EXPECT_TRUE(tellsOfFailure("End. vx63_err=-7"));
    EXPECT_FALSE(tellsOfFailure("End. vx63_err=0"));
    EXPECT_FALSE(tellsOfFailure("Start."));
    EXPECT_FALSE(tellsOfFailure("ulFreq=1, ucStrChan=[ error. ], ucOutputEnb=0"));
}

const std::string kHead = "1.000000 : p : f.cpp(1) g() : ";

TEST(LogLine, DoubtIsToldFromTheLinesInTheirOrder)
{
    LogDoubts doubts;
    EXPECT_EQ(doubts.of(kHead + "Start."), Doubt::none);
    EXPECT_EQ(doubts.of(kHead + "fileId=14, pcMeasFileName=[A], bDefault=0"), Doubt::none);
    EXPECT_EQ(doubts.of("half a li"), Doubt::form);
    EXPECT_EQ(doubts.of(""), Doubt::form);
    EXPECT_EQ(doubts.of(kHead + "a\x1Bz"), Doubt::bytes);
    EXPECT_EQ(doubts.of(kHead + "\xFF"), Doubt::bytes);
    EXPECT_EQ(doubts.of(kHead + "Tokyo \xE6\x9D\xB1"), Doubt::none);
}

TEST(LogLine, ANameWithANewlineIsDoubted)
{
    LogDoubts doubts;
    EXPECT_EQ(doubts.of(kHead + "pcUserFileName=[a"), Doubt::name);
    EXPECT_EQ(doubts.of(kHead + "End. vx63_err=0"), Doubt::name); // forged
    EXPECT_EQ(doubts.of(""), Doubt::form);
    EXPECT_EQ(doubts.of("b]"), Doubt::form);
    EXPECT_EQ(doubts.of(kHead + "End. vx63_err=-1"), Doubt::none);

    EXPECT_EQ(doubts.of("\x1B[2J"), Doubt::form); // no name has begun
    EXPECT_EQ(doubts.of(kHead + "Start."), Doubt::none);

    // It closes its bracket itself, and forges the last line too.
    EXPECT_EQ(doubts.of(kHead + "pcMeasFileName=[a], bDefault=0"), Doubt::none);
    EXPECT_EQ(doubts.of(kHead + "End. iRet=0], bDefault=0"), Doubt::name);
    EXPECT_EQ(doubts.of(kHead + "End. iRet=-2"), Doubt::none);

    // What stands behind its bracket tells that it is not the library's.
    EXPECT_EQ(doubts.of(kHead + "pcUserFileName=[x\x1B]0;y"), Doubt::name);
    EXPECT_EQ(doubts.of(kHead + "Start."), Doubt::name);
    EXPECT_EQ(doubts.of("]"), Doubt::form);
    for (const char* message : {"pKeyStat->stat[3]=1", "arg error. pcUserFileName=[n]...", "Start.",
                                "single[0] : ulFreq=1, ucStrChan=[27], ucOutputEnb=0"})
        EXPECT_EQ(doubts.of(kHead + message), Doubt::none) << message;

    // Cut short on a full disk: the next bracket ends it.
    EXPECT_EQ(doubts.of(kHead + "pcMeasFileName=[a"), Doubt::name);
    EXPECT_EQ(doubts.of(kHead + "Start."), Doubt::name);
    EXPECT_EQ(doubts.of(kHead + "pcUserFileName=[b]"), Doubt::name);
    EXPECT_EQ(doubts.of(kHead + "Start."), Doubt::none);
}

TEST(LogLine, TextShowsLocalTimeAndHarmlessBytes)
{
    setenv("TZ", "UTC0", 1);
    tzset();
    EXPECT_EQ(logLineText(kStart),
              "2023-11-14 22:13:20.012345 : demo : libvx63.cpp(42) vx63_init() : Start.");
    EXPECT_EQ(logLineText("1700000000.000000 : p : f.cpp(1) g() : a\x1B[31m\x9D"),
              "2023-11-14 22:13:20.000000 : p : f.cpp(1) g() : a\\x1B[31m\\x9D");
    EXPECT_EQ(logLineText("half a li\xC3"), "half a li\\xC3");
    EXPECT_EQ(logLineText("half a li\xC3", Doubt::form), "? half a li\\xC3");
    EXPECT_EQ(logLineText("1700000000.000000 : p : f.cpp(1) g() : [", Doubt::name),
              "? 2023-11-14 22:13:20.000000 : p : f.cpp(1) g() : [");
    // A year that no calendar knows.
    EXPECT_EQ(logLineText("9223372036854775807.000000 : p : f.cpp(1) g() : m"),
              "9223372036854775807.000000 : p : f.cpp(1) g() : m");
}

TEST(LogLine, JsonHasTheFieldsOrTheText)
{
    EXPECT_EQ(logLineJson(kStart).line(),
              R"({"time":1700000000.012345,"program":"demo","file":"libvx63.cpp","line":42,)"
              R"("function":"vx63_init","message":"Start.","text":null,"doubt":null})"
              "\n");
    EXPECT_EQ(
        logLineJson(kHead + "a]", Doubt::name).line(),
        R"({"time":1.0,"program":"p","file":"f.cpp","line":1,"function":"g","message":"a]","text":null,)"
        R"("doubt":"name"})"
        "\n");
    EXPECT_EQ(
        logLineJson("half a li", Doubt::form).line(),
        "{\"time\":null,\"program\":null,\"file\":null,\"line\":null,\"function\":null,\"message\":null,"
        "\"text\":\"half a li\",\"doubt\":\"form\"}\n");
    EXPECT_EQ(
        logLineJson("\xFF\x01", Doubt::form).line(),
        "{\"time\":null,\"program\":null,\"file\":null,\"line\":null,\"function\":null,\"message\":null,"
        "\"text\":\"\xEF\xBF\xBD\\u0001\",\"doubt\":\"form\"}\n");
}

} // namespace

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

TEST(LogLine, TextShowsLocalTimeAndHarmlessBytes)
{
    setenv("TZ", "UTC0", 1);
    tzset();
    EXPECT_EQ(logLineText(kStart),
              "2023-11-14 22:13:20.012345 : demo : libvx63.cpp(42) vx63_init() : Start.");
    EXPECT_EQ(logLineText("1700000000.000000 : p : f.cpp(1) g() : a\x1B[31m\x9D"),
              "2023-11-14 22:13:20.000000 : p : f.cpp(1) g() : a\\x1B[31m\\x9D");
    EXPECT_EQ(logLineText("half a li\xC3"), "half a li\\xC3");
    // A year that no calendar knows.
    EXPECT_EQ(logLineText("9223372036854775807.000000 : p : f.cpp(1) g() : m"),
              "9223372036854775807.000000 : p : f.cpp(1) g() : m");
}

TEST(LogLine, JsonHasTheFieldsOrTheText)
{
    EXPECT_EQ(logLineJson(kStart).line(),
              R"({"time":1700000000.012345,"program":"demo","file":"libvx63.cpp","line":42,)"
              R"("function":"vx63_init","message":"Start.","text":null})"
              "\n");
    EXPECT_EQ(
        logLineJson("half a li").line(),
        "{\"time\":null,\"program\":null,\"file\":null,\"line\":null,\"function\":null,\"message\":null,"
        "\"text\":\"half a li\"}\n");
    EXPECT_EQ(
        logLineJson("\xFF\x01").line(),
        "{\"time\":null,\"program\":null,\"file\":null,\"line\":null,\"function\":null,\"message\":null,"
        "\"text\":\"\xEF\xBF\xBD\\u0001\"}\n");
}

} // namespace

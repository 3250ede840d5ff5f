// A reading as a person and as a program gets it, and the numbers and names of the command line.
#include "common/failure.h"
#include "common/names.h"
#include "common/numbers.h"
#include "common/text.h"
#include "measure/reading.h"

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

using namespace tool;

namespace {

Reading lockedReading()
{
    Reading reading{1700000000250, "27", {}, {}, 0, VX63_POWER_SUPPLY_15V_TONE, {}};
    reading.condition.ulFreq = 557143;
    reading.condition.ulLoFreq = 0;
    reading.judgement.level = Verdict::pass;
    reading.judgement.cnr = reading.judgement.whole = Verdict::marginal;
    reading.result.lock = 1;
    reading.result.stat = 0x0007;
    reading.result.bdSys = 0;
    reading.result.LEVEL = 629;
    reading.result.CNR = 331;
    reading.result.BER_TOTAL = 1000000;
    reading.result.BER_ERR = 250;
    reading.result.TSID = 0x7FE0;
    reading.result.GI = 2;
    reading.result.LAYER = 3;
    reading.result.MOD = 1;
    return reading;
}

TEST(Reading, TextIsAligned)
{
    EXPECT_EQ(readingText(lockedReading()), "Channel         27\n"
                                            "Frequency       557143 kHz\n"
                                            "Input           0\n"
                                            "Supply          15 V, tone\n"
                                            "System          terrestrial\n"
                                            "Lock            yes\n"
                                            "Level           62.9 dBuV\n"
                                            "C/N             33.1 dB\n"
                                            "Bit error rate  2.5e-04\n"
                                            "Errors/bits     250/1000000\n"
                                            "Modulation      OFDM\n"
                                            "Guard interval  1/8\n"
                                            "TSID            0x7FE0\n"
                                            "Layer           3\n"
                                            "Verdict         marginal: C/N\n");
}

TEST(Reading, OfALevelCarrierNoLockIsAskedFor)
{
    Reading reading{0, "", {}, {}, {}, {}, {}};
    reading.condition.usBdSys = 10; // level
    EXPECT_NE(readingText(reading).find("Lock            -\n"), std::string::npos);
}

TEST(Reading, WithoutLockTheSignalIsUnknown)
{
    Reading reading{0, "", {}, {}, {}, {}, {}};
    reading.condition.ulFreq = 575143;
    reading.result.LEVEL = 95;
    EXPECT_EQ(readingText(reading), "Frequency       575143 kHz\n"
                                    "Input           -\n"
                                    "Supply          -\n"
                                    "System          terrestrial\n"
                                    "Lock            no\n"
                                    "Level           9.5 dBuV\n"
                                    "C/N             0.0 dB\n"
                                    "Bit error rate  -\n"
                                    "Errors/bits     0/0\n"
                                    "Modulation      -\n"
                                    "Guard interval  -\n"
                                    "TSID            -\n"
                                    "Layer           -\n"
                                    "Verdict         -\n");
    EXPECT_EQ(
        readingJson(reading).line(),
        R"({"time":0.0,"channel":null,"frequency_khz":575143,"lo_khz":0,"input":null,"power_supply":null,)"
        R"("signal":false,"locked":false,"unrecognised":false,"level_dbuv":9.5,"cnr_db":0.0,"ber":null,"ber_errors":0,"ber_bits":0,)"
        R"("system":"terrestrial","modulation":null,"guard_interval":null,"tsid":null,"layer":null,)"
        R"("verdict":null,"level_verdict":null,"cnr_verdict":null,"ber_verdict":null,"lock_code":0,)"
        R"("status_code":0,"condition_code":0,"system_code":0,"modulation_code":0,"guard_interval_code":0})"
        "\n");
}

TEST(Reading, JsonHasNumbersInUnits)
{
    EXPECT_EQ(
        readingJson(lockedReading()).line(),
        R"({"time":1700000000.25,"channel":"27","frequency_khz":557143,"lo_khz":0,"input":0,"power_supply":4,)"
        R"("signal":true,"locked":true,"unrecognised":false,"level_dbuv":62.9,"cnr_db":33.1,"ber":0.00025,"ber_errors":250,)"
        R"("ber_bits":1000000,"system":"terrestrial","modulation":"OFDM","guard_interval":"1/8","tsid":32736,)"
        R"("layer":3,"verdict":"marginal","level_verdict":"pass","cnr_verdict":"marginal","ber_verdict":null,)"
        R"("lock_code":1,"status_code":7,"condition_code":0,"system_code":0,"modulation_code":1,)"
        R"("guard_interval_code":2})"
        "\n");
}

TEST(Reading, CsvHasTheKeysOfJson)
{
    const Json json = readingJson(lockedReading());
    EXPECT_EQ(
        json.csvHeader(),
        "time,channel,frequency_khz,lo_khz,input,power_supply,signal,locked,unrecognised,level_dbuv,cnr_db,"
        "ber,ber_errors,"
        "ber_bits,system,modulation,guard_interval,tsid,layer,verdict,level_verdict,cnr_verdict,ber_verdict,"
        "lock_code,status_code,condition_code,system_code,modulation_code,guard_interval_code\n");
    EXPECT_EQ(json.csvLine(),
              "1700000000.25,27,557143,0,0,4,true,true,false,62.9,33.1,0.00025,250,1000000,terrestrial,OFDM,"
              "1/8,32736,3,marginal,pass,marginal,,1,7,0,0,1,2\n");
    EXPECT_EQ(Json({{"a,b", "c\"d"}, {"e", Json::array({1, 2})}, {"f", nullptr}}).csvHeader(),
              "\"a,b\",e,f\n");
    EXPECT_EQ(Json({{"a,b", "c\"d"}, {"e", Json::array({1, 2})}, {"f", nullptr}}).csvLine(),
              "\"c\"\"d\",\"[1,2]\",\n");
}

TEST(Json, HasNothingThatATerminalObeys)
{
    const Json json = {{"a", "\x1B[31m\x7F\u009B\u00A0\xFF\n"}};
    EXPECT_EQ(json.line(), "{\"a\":\"\\u001b[31m\\u007f\\u009b\u00A0\uFFFD\\n\"}\n");
    EXPECT_EQ(json.csvLine(), "\\x1B[31m\\x7F\\xC2\\x9B\u00A0\\xFF\\x0A\n");
}

TEST(Reading, SurroundingsAreThoseOfTheStatus)
{
    const auto supplyAt = [](uint16_t bits) {
        Reading reading{};
        MeasStatus status{};
        status.usInputStat = bits;
        setSurroundings(reading, status);
        return std::pair(*reading.input, *reading.supply);
    };
    EXPECT_EQ(supplyAt(0x00), std::pair(0u, 0u));
    EXPECT_EQ(supplyAt(0x01), std::pair(1u, 0u));
    EXPECT_EQ(supplyAt(0x02), std::pair(0u, 1u));
    EXPECT_EQ(supplyAt(0x06), std::pair(0u, 2u));
    EXPECT_EQ(supplyAt(0x0A), std::pair(0u, 3u));
    EXPECT_EQ(supplyAt(0x3F), std::pair(1u, 4u));
    EXPECT_EQ(supplyAt(0x0C), std::pair(0u, 0u)); // what it would be does not count while it is off
}

TEST(Numbers, AreRoundedToWhatTheyMean)
{
    EXPECT_EQ(rounded(33.6612, 2), 33.66);
    EXPECT_EQ(rounded(-0.005, 1), 0.0);
    EXPECT_FALSE(std::signbit(rounded(-5.55e-17, 3)));
    EXPECT_TRUE(std::isnan(rounded(std::nan(""), 3)));
    EXPECT_EQ(significant(0.000123456, 4), 0.0001235);
    EXPECT_EQ(significant(0, 4), 0.0);
}

TEST(Reading, UnknownCodesAreShownAsCodes)
{
    Reading reading = lockedReading();
    reading.result.bdSys = 0xFFFF;
    reading.result.MOD = 0xFFFFFFFF;
    const std::string text = readingText(reading);
    EXPECT_NE(text.find("System          code 0xFFFF\n"), std::string::npos);
    EXPECT_NE(text.find("Modulation      code 0xFFFFFFFF\n"), std::string::npos);
    EXPECT_NE(text.find("Guard interval  -\n"), std::string::npos); // of OFDM signals only
    const std::string json = readingJson(reading).line();
    EXPECT_NE(json.find(R"("system":null,)"), std::string::npos);
    EXPECT_NE(json.find(R"("guard_interval":null,)"), std::string::npos);
    EXPECT_NE(json.find(R"("modulation_code":4294967295,)"), std::string::npos);
    reading.result.MOD = 1;
    reading.result.GI = 4;
    EXPECT_NE(readingText(reading).find("Guard interval  code 0x4\n"), std::string::npos);
}

TEST(Reading, BitErrorRateSaysHowMuchIsKnown)
{
    MultiMeasResult result{};
    EXPECT_EQ(bitErrorRateText(result), "-");
    EXPECT_FALSE(bitErrorRate(result));
    result.BER_TOTAL = 2000000;
    EXPECT_EQ(bitErrorRateText(result), "< 5.0e-07");
    EXPECT_EQ(bitErrorRate(result), 0.0);
    result.BER_ERR = 2000000;
    EXPECT_EQ(bitErrorRateText(result), "1.0e+00");
}

TEST(Reading, TableHasOneLineAReading)
{
    setenv("TZ", "UTC0", 1);
    tzset();
    EXPECT_EQ(readingTableHeader(), "Time       dBuV C/N dB        BER Lock\n");
    EXPECT_EQ(readingTableRow(lockedReading()), "22:13:20   62.9   33.1    2.5e-04  yes\n");
}

TEST(Reading, TextFitsFortyColumns)
{
    Reading reading{1700000000250, "", {}, {}, {}, {}, {}};
    reading.condition.ulFreq = UINT32_MAX;
    reading.result.lock = 1;
    reading.result.LEVEL = reading.result.BER_TOTAL = reading.result.BER_ERR = reading.result.MOD =
        UINT32_MAX;
    std::istringstream lines(readingText(reading) + readingTableHeader() + readingTableRow(lockedReading()));
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 40u) << line;
}

TEST(Options, NumbersAreDecimalOrHexadecimal)
{
    EXPECT_EQ(parseNumber("0"), 0u);
    EXPECT_EQ(parseNumber("010"), 10u);
    EXPECT_EQ(parseNumber("0x1F"), 31u);
    EXPECT_EQ(parseNumber("18446744073709551615"), UINT64_MAX);
    for (const char* text : {"", "-1", "+1", " 1", "1 ", "1.5", "1k", "0x", "x1", "18446744073709551616"})
        EXPECT_FALSE(parseNumber(text)) << text;
}

TEST(Options, RangesHold)
{
    EXPECT_EQ(numberIn("--n", "1", 1, 4), 1u);
    EXPECT_EQ(numberIn("--n", "4", 1, 4), 4u);
    EXPECT_THROW(numberIn("--n", "0", 1, 4), WrongUsage);
    EXPECT_THROW(numberIn("--n", "5", 1, 4), WrongUsage);
    EXPECT_EQ(secondsIn("--s", "0.25", 0, 10), 250);
    EXPECT_EQ(secondsIn("--s", "10", 0, 10), 10000);
    for (const char* text : {"", "nan", "inf", "-1", "10.01", "1e1", "1s"})
        EXPECT_THROW(secondsIn("--s", text, 0, 10), WrongUsage) << text;
}

TEST(Names, GoBothWays)
{
    EXPECT_EQ(systemCode("terrestrial"), 0);
    EXPECT_EQ(systemCode("Satellite-2"), 2);
    EXPECT_EQ(systemCode("catv-2"), 9);
    EXPECT_FALSE(systemCode("sat"));
    EXPECT_EQ(systemName(10), "level");
    EXPECT_FALSE(systemName(7));
    EXPECT_EQ(modulationCode("256qam", 3), 4096);
    EXPECT_EQ(modulationCode("8PSK", 1), 16);
    EXPECT_EQ(modulationCode("8PSK", 2), 32);
    EXPECT_EQ(modulationName(32), "8PSK");
    EXPECT_FALSE(modulationName(0));
    EXPECT_EQ(guardIntervalName(0), "1/32");
    EXPECT_EQ(guardIntervalName(3), "1/4");
    EXPECT_EQ(powerSupplyName(4), "15 V, tone");
}

TEST(Text, PrintableKeepsWhatIsPrintable)
{
    EXPECT_EQ(printable("a\tb \xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"),
              "a\tb \xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(printable(std::string_view("\0\n\x7F", 3)), "\\x00\\x0A\\x7F");
    EXPECT_EQ(printable("\xC2\x85"), "\\xC2\\x85"); // a control character of two bytes
    EXPECT_EQ(printable("\xC0\xAF"), "\\xC0\\xAF"); // not the shortest form
    EXPECT_EQ(printable("\xE0\x80\xAF"), "\\xE0\\x80\\xAF");
    EXPECT_EQ(printable("\xF0\x80\x80\xAF"), "\\xF0\\x80\\x80\\xAF");
    EXPECT_EQ(printable("\xE2\x82"), "\\xE2\\x82");                   // cut short
    EXPECT_EQ(printable("\xED\xA0\x80"), "\\xED\\xA0\\x80");          // a surrogate
    EXPECT_EQ(printable("\xF4\x90\x80\x80"), "\\xF4\\x90\\x80\\x80"); // beyond the last character
    EXPECT_EQ(printable("\xE2z"), "\\xE2z");
}

} // namespace

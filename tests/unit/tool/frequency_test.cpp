// Frequencies as people type and read them.
#include "measure/frequency.h"

#include "common/failure.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

using namespace tool;

TEST(Frequency, IsReadInWholeKilohertz)
{
    const std::pair<const char*, uint32_t> kTyped[] = {
        {"557143", 557143},
        {"0", 0},
        {"010", 10},
        {"0xA2EEF0", 10678000},
        {"4294967295", 4294967295},
        {"557143kHz", 557143},
        {"557143 KHZ", 557143},
        {"557143.000 khz", 557143},
        {"557.143MHz", 557143},
        {"557.143 mhz", 557143},
        {"557.1430000MHz", 557143},
        {"93MHz", 93000},
        {"93.5  MHz", 93500},
        {"0.001MHz", 1},
        {"1.03648GHz", 1036480},
        {"11.72748ghz", 11727480},
        {"4294.967295 GHz", 4294967295},
        {"4294.967295GHz", 4294967295},
        {"0.000001GHz", 1},
        {"16777.217MHz", 16777217}, // more than a float holds
        {"1048.577MHz", 1048577},
    };
    for (const auto& [typed, khz] : kTyped)
        EXPECT_EQ(parseKhz(typed), khz) << typed;
}

TEST(Frequency, IsNothingElse)
{
    for (const char* typed : {"",
                              " ",
                              "MHz",
                              " MHz",
                              ".",
                              ".5MHz",
                              "5.MHz",
                              "557.143",
                              "0.1kHz",
                              "0.1 kHz",
                              "557.1435MHz",
                              "1.0364801GHz",
                              "1e3",
                              "1e3MHz",
                              "557,143MHz",
                              "557.143.0MHz",
                              "-1",
                              "-557.143MHz",
                              "+557.143MHz",
                              " 557143",
                              "557143 ",
                              "557.143MHz ",
                              "557.143M",
                              "557.143 M Hz",
                              "557143Hz",
                              "557.143MHzMHz",
                              "0x10MHz",
                              "4294967296",
                              "4294967.296MHz",
                              "4294.967296GHz",
                              "99999999999999999999",
                              "99999999999999999999GHz",
                              "557143\tkHz"})
        EXPECT_EQ(parseKhz(typed), std::nullopt) << typed;
}

TEST(Frequency, HasALowestValue)
{
    EXPECT_EQ(khzIn("--lo", "0", 0), 0u);
    EXPECT_EQ(khzIn("--freq", "1", 1), 1u);
    EXPECT_THROW(khzIn("--freq", "0 MHz", 1), WrongUsage);
    EXPECT_THROW(khzIn("--freq", "MHz", 0), WrongUsage);
}

TEST(Frequency, IsShownInMegahertz)
{
    EXPECT_EQ(megahertz(557143), "557.143 MHz");
    EXPECT_EQ(megahertz(11804200), "11804.2 MHz");
    EXPECT_EQ(megahertz(11727480), "11727.48 MHz");
    EXPECT_EQ(megahertz(93000), "93 MHz");
    EXPECT_EQ(megahertz(100000), "100 MHz");
    EXPECT_EQ(megahertz(1), "0.001 MHz");
    EXPECT_EQ(megahertz(0), "0 MHz");
    EXPECT_EQ(megahertz(4294967295), "4294967.295 MHz");
}

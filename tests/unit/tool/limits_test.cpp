// What the meter takes.
#include "measure/limits.h"

#include <gtest/gtest.h>
#include <string>

using namespace tool;

namespace {

MeasCondition condition(uint32_t ulFreq, uint32_t ulLoFreq = 0, uint16_t usBdSys = 0, uint16_t usMod = 0)
{
    MeasCondition result{};
    result.ulFreq = ulFreq;
    result.ulLoFreq = ulLoFreq;
    result.usBdSys = usBdSys;
    result.usMod = usMod;
    return result;
}

std::string refused(const MeasCondition& condition)
{
    const auto refusal = refusalOf(condition);
    return refusal ? std::string(refusal->option) + " " + refusal->key + " " + refusal->why : "";
}

} // namespace

TEST(Limits, OfTheTuner)
{
    EXPECT_EQ(refused(condition(10000)), "");
    EXPECT_EQ(refused(condition(3224000)), "");
    EXPECT_EQ(refused(condition(9999)), "--freq frequency_khz 9.999 MHz is outside 10..3224 MHz of the "
                                        "tuner; a number without a unit is in kHz");
    EXPECT_EQ(refused(condition(3224001)),
              "--freq frequency_khz 3224.001 MHz is outside 10..3224 MHz of the tuner; a "
              "satellite's needs the local oscillator of the LNB");
    EXPECT_EQ(refused(condition(3224001, 4294967295)), refused(condition(3224001)));
    EXPECT_EQ(refused(condition(11727480, 11717480)), "");
    EXPECT_EQ(refused(condition(11727480, 8503480)), "");
    EXPECT_EQ(
        refused(condition(11727480, 11717481)),
        "--freq frequency_khz 11727.48 MHz less the local oscillator, 11717.481 MHz, is 9.999 MHz, outside "
        "10..3224 MHz of the tuner");
    EXPECT_NE(refused(condition(11727480, 8503479)), "");
    EXPECT_EQ(refused(condition(557143, 557143)),
              "--lo lo_khz the local oscillator, 557.143 MHz, is not below the frequency, 557.143 MHz");
}

TEST(Limits, OfModulations)
{
    EXPECT_EQ(refused(condition(557143, 0, 0, 1)), "");
    EXPECT_EQ(refused(condition(557143, 0, 0, 0x1001)), ""); // one of them will do
    EXPECT_EQ(refused(condition(557143, 0, 0, 0x1000)),
              "--mod modulation 256QAM is no modulation of terrestrial, which has OFDM");
    EXPECT_EQ(refused(condition(1049480, 0, 1, 0x0040)),
              "--mod modulation 16APSK is no modulation of satellite, which has BPSK, QPSK, 8PSK");
    EXPECT_NE(refused(condition(1049480, 0, 1, 0x0020)), ""); // its 8PSK has another code
    EXPECT_EQ(refused(condition(1049480, 0, 1, 0x0010)), "");
    for (const uint16_t system : {uint16_t{2}, uint16_t{5}})
        EXPECT_EQ(refused(condition(1049480, 0, system, 0x0080)), "") << system;
    for (const uint16_t system : {uint16_t{3}, uint16_t{6}, uint16_t{9}})
        EXPECT_EQ(refused(condition(557000, 0, system, 0x1000)), "") << system;
    EXPECT_NE(refused(condition(557000, 0, 6, 0x0400)), "");
    EXPECT_NE(refused(condition(1049480, 0, 4, 0x0020)), "");
    EXPECT_EQ(refused(condition(76500, 0, 10, 0x2000)), "");
    EXPECT_EQ(refused(condition(557143, 0, 7, 0x0800)), ""); // a system that only the meter may know
    EXPECT_EQ(refused(condition(557143, 0, 0, 0x4000)),
              "--mod modulation 0x4000 is no modulation of terrestrial, which has OFDM");
}

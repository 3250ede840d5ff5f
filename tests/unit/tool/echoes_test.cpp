// Paths in a delay profile.
#include "measure/echoes.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <iterator>
#include <numbers>

using namespace tool;

namespace {

struct Profile {
    int8_t samples[VX63_DLYPRF_SAMPLES];
};

Profile silent()
{
    Profile profile;
    std::fill(std::begin(profile.samples), std::end(profile.samples), int8_t{-128});
    return profile;
}

// What a path alone shows: a pulse of 5.57 MHz under a Hann window, in half decibels.
void addPulse(Profile& profile, double delayUs, double levelDb)
{
    for (int i = 0; i < VX63_DLYPRF_SAMPLES; ++i) {
        const double x = ((i - 512) * 0.1640625 - delayUs) * 5.57;
        const double sinc = std::abs(x) < 1e-9 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
        const double pulse = std::abs(std::abs(x) - 1) < 1e-6 ? 0.5 : sinc / (1 - x * x);
        const double db = levelDb + 20 * std::log10(std::abs(pulse) + 1e-9);
        profile.samples[i] =
            std::max(profile.samples[i], static_cast<int8_t>(std::clamp(2 * db, -128.0, 127.0)));
    }
}

TEST(Echoes, TimeAndLevelOfSamples)
{
    EXPECT_DOUBLE_EQ(delayOf(0), -84);
    EXPECT_DOUBLE_EQ(delayOf(512), 0);
    EXPECT_DOUBLE_EQ(delayOf(2047), 251.8359375);
    EXPECT_DOUBLE_EQ(levelOf(-20), -10);
    EXPECT_DOUBLE_EQ(levelOf(-128), -64);
    EXPECT_NEAR(distanceKm(10), 2.998, 0.001);
}

TEST(Echoes, NoneInSilence)
{
    EXPECT_TRUE(findPaths(silent().samples).empty());
}

TEST(Echoes, MainPathAloneHasNoSideLobesForEchoes)
{
    Profile profile = silent();
    addPulse(profile, 0, 0);
    const auto paths = findPaths(profile.samples);
    ASSERT_EQ(paths.size(), 1u);
    EXPECT_NEAR(paths[0].delayUs, 0, 0.01);
    EXPECT_NEAR(paths[0].levelDb, 0, 0.1);
}

TEST(Echoes, SideLobesAreNoEchoesWhereverThePathLies)
{
    for (double delay = 20; delay < 20.17; delay += 0.01) {
        Profile profile = silent();
        addPulse(profile, delay, -1);
        const auto paths = findPaths(profile.samples);
        ASSERT_EQ(paths.size(), 1u) << delay;
        EXPECT_NEAR(paths[0].delayUs, delay, 0.05);
    }
}

TEST(Echoes, BetweenSamplesAndInOrder)
{
    Profile profile = silent();
    addPulse(profile, 0, 0);
    addPulse(profile, 18.6, -14);
    addPulse(profile, -9.2, -26);
    addPulse(profile, 122, -33);
    const auto paths = findPaths(profile.samples);
    ASSERT_EQ(paths.size(), 4u);
    const double delays[] = {-9.2, 0, 18.6, 122};
    const double levels[] = {-26, 0, -14, -33};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(paths[i].delayUs, delays[i], 0.05);
        EXPECT_NEAR(paths[i].levelDb, levels[i], 0.6);
    }
}

TEST(Echoes, AtBothEnds)
{
    Profile profile = silent();
    profile.samples[0] = -20;
    profile.samples[2047] = -30;
    const auto paths = findPaths(profile.samples);
    ASSERT_EQ(paths.size(), 2u);
    EXPECT_EQ(paths[0].delayUs, -84);
    EXPECT_EQ(paths[1].levelDb, -15);
}

// Whatever a service delivers.
TEST(Echoes, AnyBytes)
{
    Profile profile;
    for (const int step : {0, 1, 7, 64, 127}) {
        for (int i = 0; i < VX63_DLYPRF_SAMPLES; ++i)
            profile.samples[i] = static_cast<int8_t>(i * step);
        EXPECT_LE(findPaths(profile.samples).size(), kMaxPaths);
    }
    for (int i = 0; i < VX63_DLYPRF_SAMPLES; ++i)
        profile.samples[i] = i % 20 == 0 ? 127 : -128;
    EXPECT_EQ(findPaths(profile.samples).size(), kMaxPaths);
}

} // namespace

// Ideal points and the modulation error ratio.
#include "measure/modulation_error.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

using namespace tool;

namespace {

using Points = std::vector<ConstaPoint>;

// 64QAM lies at 9.876 times 1, 3, 5, 7.
Points noisy(const std::vector<std::complex<double>>& ideal, double cnDb, int count)
{
    std::mt19937 random(1);
    std::uniform_int_distribution<size_t> symbol(0, ideal.size() - 1);
    std::normal_distribution<double> noise(0, std::sqrt(64 * 64 / (2 * std::pow(10, cnDb / 10)) - 1.0 / 12));
    const auto byte = [](double value) {
        return static_cast<int8_t>(std::clamp<long>(std::lround(value), -128, 127));
    };
    Points points;
    for (int i = 0; i < count; ++i) {
        const auto& at = ideal[symbol(random)];
        points.push_back({byte(at.real() + noise(random)), byte(at.imag() + noise(random))});
    }
    return points;
}

std::vector<std::complex<double>> grid(const std::vector<double>& levels)
{
    std::vector<std::complex<double>> points;
    for (const double i : levels)
        for (const double q : levels)
            points.insert(points.end(), {{i, q}, {-i, q}, {i, -q}, {-i, -q}});
    return points;
}

const auto kQpsk = grid({45.2548});
const auto kQam16 = grid({20.2386, 60.7157});
const auto kQam64 = grid({9.8754, 29.6263, 49.3771, 69.1280});

TEST(IdealPoints, OfEveryModulation)
{
    const std::pair<uint32_t, size_t> sizes[] = {{2, 2},   {8, 4},    {16, 8},    {32, 8},
                                                 {64, 16}, {128, 32}, {1024, 64}, {4096, 256}};
    for (const auto& [MOD, size] : sizes) {
        const auto ideal = idealPoints(MOD, {}, 0);
        ASSERT_TRUE(ideal) << MOD;
        EXPECT_EQ(ideal->points.size(), size);
        double power = 0;
        for (const auto& point : ideal->points)
            power += std::norm(point);
        EXPECT_NEAR(power / static_cast<double>(size), 4096, 0.01);
    }
    for (const uint32_t MOD : {0u, 3u, 8192u, 4294967295u})
        EXPECT_FALSE(idealPoints(MOD, {}, 0));
}

TEST(IdealPoints, LieWhereTheMeterHasThem)
{
    const auto ofType = [](uint32_t MOD) { return idealPoints(MOD, {}, 0)->points; };
    const auto has = [](const auto& points, double i, double q) {
        return std::ranges::any_of(points,
                                   [&](const auto& p) { return std::abs(p - std::complex(i, q)) < 0.01; });
    };
    EXPECT_TRUE(has(ofType(2), -64, 0));
    EXPECT_TRUE(has(ofType(8), 45.25, -45.25));
    EXPECT_TRUE(has(ofType(16), 64, 0));
    EXPECT_TRUE(has(ofType(1024), -69.13, 9.875));
    EXPECT_TRUE(has(ofType(4096), 73.63, -73.63));
    EXPECT_TRUE(has(ofType(128), 81.71, 0));
}

TEST(IdealPoints, CarriersAreTold)
{
    for (const double cnDb : {7.0, 10.0, 20.0, 35.0, 60.0})
        EXPECT_EQ(idealPoints(1, noisy(kQpsk, std::min(cnDb, 40.0), 1000), cnDb)->modulation, "QPSK");
    for (const double cnDb : {14.0, 20.0, 35.0})
        EXPECT_EQ(idealPoints(1, noisy(kQam16, cnDb, 1000), cnDb)->modulation, "16QAM");
    for (const double cnDb : {19.0, 25.0, 35.0})
        EXPECT_EQ(idealPoints(1, noisy(kQam64, cnDb, 1000), cnDb)->modulation, "64QAM");
}

TEST(ModulationErrorRatio, OfKnownErrors)
{
    // 64 against an error of 2: 20 log 32.
    EXPECT_NEAR(*modulationErrorRatio(Points{{66, 0}, {-64, 2}}, *idealPoints(2, {}, 0)), 30.103, 0.001);
    EXPECT_FALSE(modulationErrorRatio({}, *idealPoints(2, {}, 0)));
    EXPECT_FALSE(modulationErrorRatio(Points{{64, 0}}, *idealPoints(2, {}, 0)));
}

TEST(ModulationErrorRatio, IsTheCarrierToNoiseRatio)
{
    for (const double cnDb : {22.0, 30.0, 35.0})
        EXPECT_NEAR(*modulationErrorRatio(noisy(kQam64, cnDb, 4000), *idealPoints(1024, {}, 0)), cnDb, 0.4);
}

} // namespace

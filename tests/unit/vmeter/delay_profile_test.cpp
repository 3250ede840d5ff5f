// Delay profiles of the virtual meter.
#include "meter_bench.h"
#include "signal/delay_profile.h"

#include <rapidcheck/gtest.h>

#include <cmath>
#include <vector>

namespace vmeter {
namespace {

uint8_t start(Bench& bench, const wire::StartRequest& request)
{
    return bench.call(kMeasurementService, 0x107, toBody(request))[0];
}

wire::DlyPrfResponse block(Bench& bench, uint16_t usBlockNo)
{
    wire::DlyPrfRequest request{};
    request.usBlockNo = usBlockNo;
    return bench.ask<wire::DlyPrfResponse>(kMeasurementService, 0x108, request);
}

std::vector<int> profile(Bench& bench)
{
    std::vector<int> samples;
    for (uint16_t usBlockNo = 0; usBlockNo <= 5; ++usBlockNo) {
        const wire::DlyPrfResponse response = block(bench, usBlockNo);
        EXPECT_EQ(response.ucRet, 0);
        EXPECT_EQ(response.usStatus, 2);
        EXPECT_EQ(response.usReadBlockNo, usBlockNo);
        const int used = usBlockNo < 5 ? 400 : 48;
        samples.insert(samples.end(), response.data, response.data + used);
        for (int i = used; i < 400; ++i)
            EXPECT_EQ(response.data[i], 0);
    }
    return samples;
}

// A channel without noise to speak of, complete.
Bench completeWith(const std::vector<Echo>& echoes, double cnDb = 60.0)
{
    Bench bench;
    bench.scene_.noiseFigureDb = 0.0;
    bench.scene_.signals[0].levelDbuv = 120.0;
    bench.scene_.signals[0].cnDb = cnDb;
    bench.scene_.signals[0].echoes = echoes;
    EXPECT_EQ(start(bench, terrestrial()), 0);
    bench.state_.ulSimMs += 200;
    EXPECT_EQ(block(bench, 0).usStatus, 1); // locks
    bench.state_.ulSimMs += 500;
    return bench;
}

TEST(DelayProfile, IsMeasuredAfterTheLock)
{
    Bench bench;
    EXPECT_EQ(start(bench, terrestrial()), 0);
    for (int i = 1; i < 8; ++i) { // locks at 300 ms, complete 500 ms later
        const wire::DlyPrfResponse response = block(bench, 3);
        EXPECT_EQ(response.usStatus, 1) << i;
        EXPECT_EQ(response.usReadBlockNo, 3);
        EXPECT_TRUE(std::ranges::all_of(response.data, [](int8_t sample) { return sample == 0; }));
    }
    EXPECT_EQ(block(bench, 3).usStatus, 2);
    EXPECT_EQ(block(bench, 0).usStatus, 2);
    EXPECT_EQ(bench.call(kMeasurementService, 0x107, Body(40)), Body(4));
    EXPECT_EQ(block(bench, 0).ucRet, 5);
}

TEST(DelayProfile, ThereIsNoneWithoutASignalToLockTo)
{
    Bench bench;
    wire::StartRequest empty = terrestrial();
    empty.ulFreq += 6000;
    EXPECT_EQ(start(bench, empty), 0);
    EXPECT_EQ(block(bench, 0).usStatus, 0);
    bench.state_.ulSimMs += 10000;
    EXPECT_EQ(block(bench, 0).usStatus, 0);
    EXPECT_EQ(start(bench, terrestrial()), 0);
    bench.scene_.signals[0].cnDb = 18.5; // below what 64QAM needs
    EXPECT_EQ(block(bench, 0).usStatus, 0);
}

TEST(DelayProfile, ALostLockBeginsItAnew)
{
    Bench bench = completeWith({});
    EXPECT_EQ(block(bench, 0).usStatus, 2);
    EXPECT_EQ(bench.input(1), 0);
    EXPECT_EQ(bench.input(0), 0);
    EXPECT_EQ(block(bench, 0).usStatus, 1);
    bench.state_.ulSimMs += 500;
    EXPECT_EQ(block(bench, 0).usStatus, 1); // locked again for 400 ms
    EXPECT_EQ(block(bench, 0).usStatus, 2);
    EXPECT_EQ(start(bench, terrestrial()), 0);
    EXPECT_EQ(block(bench, 0).usStatus, 1);
}

TEST(DelayProfile, TheMainPathStandsAt84Microseconds)
{
    Bench bench = completeWith({});
    const std::vector<int> samples = profile(bench);
    ASSERT_EQ(samples.size(), 2048u);
    EXPECT_EQ(samples[512], 0);
    // B = 5.57 MHz, x = 5.57 * 0.1640625 = 0.913828: sin(pi x) / (pi x (1 - x^2)) = 0.5663, -4.94 dB
    EXPECT_EQ(samples[511], -10);
    EXPECT_EQ(samples[513], -10);
    // x = 1.827656: -0.0384, -28.3 dB
    EXPECT_EQ(samples[510], -57);
    EXPECT_EQ(samples[514], -57);
    EXPECT_LT(samples[0], -120);
    EXPECT_LT(samples[2047], -120);
}

TEST(DelayProfile, EchoesStandAtTheirDelayWithTheirLevel)
{
    // On samples: 64 * 0.1640625 = 10.5 us, 1500 * 0.1640625 = 246.09375 us, -480 * 0.1640625 = -78.75 us.
    Bench bench = completeWith({{10.5, -10.0, 0.0}, {246.09375, -20.0, 123.0}, {-78.75, -30.0, -77.0}});
    const std::vector<int> samples = profile(bench);
    EXPECT_EQ(samples[512], 0);
    EXPECT_EQ(samples[512 + 64], -20);
    EXPECT_EQ(samples[512 + 1500], -40);
    EXPECT_EQ(samples[512 - 480], -60);
    EXPECT_EQ(std::ranges::count_if(samples, [](int sample) { return sample > -60; }), 5 + 3 + 3);
}

TEST(DelayProfile, PathsThatFallTogetherAddUpOrCancel)
{
    Bench same = completeWith({{0.0, 0.0, 0.0}});
    EXPECT_EQ(profile(same)[512], 12); // +6.02 dB
    Bench opposite = completeWith({{0.0, 0.0, 180.0}});
    EXPECT_LT(profile(opposite)[512], -120);
    Bench quarter = completeWith({{0.0, 0.0, 90.0}});
    EXPECT_EQ(profile(quarter)[512], 6); // +3.01 dB
}

TEST(DelayProfile, TheFloorFollowsTheCn)
{
    for (const double cnDb : {20.0, 23.0}) {
        Bench bench = completeWith({}, cnDb);
        const std::vector<int> samples = profile(bench);
        double power = 0.0;
        for (int i = 600; i < 2048; ++i)
            power += std::pow(10.0, samples[static_cast<size_t>(i)] / 20.0);
        // 10 lg(1.5 / 1872) = -30.96
        EXPECT_NEAR(10.0 * std::log10(power / 1448.0), -30.96 - cnDb, 0.4);
    }
}

TEST(DelayProfile, AllBlocksShowTheSameMoment)
{
    Bench bench = completeWith({}, 25.0);
    const std::vector<int> first = profile(bench);
    EXPECT_EQ(profile(bench), first);
    bench.state_.ulSimMs += 100000;
    EXPECT_EQ(profile(bench), first);
    Bench again = completeWith({}, 25.0);
    EXPECT_EQ(profile(again), first);
    again.scene_.seed = 2;
    EXPECT_NE(profile(again), first);
}

TEST(DelayProfile, IsRefusedInTheWrongOrder)
{
    Bench bench;
    EXPECT_EQ(block(bench, 0).ucRet, 5);
    bench.start(terrestrial());
    EXPECT_EQ(block(bench, 0).ucRet, 5);
    bench.stop();
    EXPECT_EQ(start(bench, satellite()), 2);
    wire::StartRequest bad = terrestrial();
    bad.ulFreq = 1;
    EXPECT_EQ(start(bench, bad), 2);
    bad = terrestrial();
    bad.ucStartStop = 2;
    EXPECT_EQ(start(bench, bad), 2);
    EXPECT_EQ(start(bench, terrestrial()), 0);
    EXPECT_EQ(block(bench, 6).ucRet, 2);
    EXPECT_EQ(block(bench, 65535).ucRet, 2);
    EXPECT_EQ(block(bench, 5).ucRet, 0);
    EXPECT_EQ(bench.result().ucRet, 5);
}

TEST(DelayProfile, ReportsAFaultOfThePowerSupply)
{
    Bench bench;
    bench.scene_.inputs[0].lnb.shortCircuit = true;
    wire::StartRequest fed = terrestrial();
    fed.ucSupplyLevel = 1;
    EXPECT_EQ(start(bench, fed), 0);
    Body refused(412);
    refused[0] = 3;
    EXPECT_EQ(toBody(block(bench, 0)), refused);
}

RC_GTEST_PROP(DelayProfile, AnyEchoStandsWhereItBelongs, ())
{
    const int at = *rc::gen::inRange(0, 2048);
    RC_PRE(std::abs(at - 512) > 60);             // the tail of the main path has faded
    const int level = *rc::gen::inRange(-80, 1); // half decibels
    Signal signal{};
    signal.bandwidthKhz = 5570.0;
    signal.echoes = {{(at - 512) * 0.1640625, level / 2.0, *rc::gen::inRange(-360, 361) * 1.0}};
    Random random(1, 1, Purpose::delayProfile, 0);
    const int sample = profileSample(signal, static_cast<uint32_t>(at), 200.0, random);
    RC_ASSERT(std::abs(sample - level) <= 1);
}

} // namespace
} // namespace vmeter

// The measurement and device services of the virtual meter: their handlers, called as the service loop does.
#include "meter_bench.h"

#include <rapidcheck/gtest.h>

#include <map>
#include <set>
#include <vector>

namespace vmeter {
namespace {

TEST(VmeterServices, HaveTheirIdsAndCommands)
{
    EXPECT_EQ(kMeasurementService.ucProcId, 12);
    EXPECT_STREQ(kMeasurementService.name, "meas");
    EXPECT_EQ(kDeviceService.ucProcId, 6);
    EXPECT_STREQ(kDeviceService.name, "dev");
    const auto expectCommands = [](const Service& service, const std::map<uint16_t, std::string>& expected) {
        std::map<uint16_t, std::string> commands;
        for (const Command& command : service.commands)
            commands[command.usCmd] = command.name;
        EXPECT_EQ(commands, expected);
    };
    expectCommands(kMeasurementService, {{0x0E, "standby"},
                                         {0x0F, "wakeup"},
                                         {0x15, "power-supply"},
                                         {0x16, "calibration"},
                                         {0x17, "meas-status"},
                                         {0x18, "standby-state"},
                                         {0x19, "low-battery"},
                                         {0x1C, "mix-band-supply"},
                                         {0x1D, "force-standby"},
                                         {0x1E, "force-wakeup"},
                                         {0x100, "set-input"},
                                         {0x103, "single-start"},
                                         {0x104, "single-result"},
                                         {0x105, "constellation-start"},
                                         {0x106, "constellation-result"},
                                         {0x107, "delay-profile-start"},
                                         {0x108, "delay-profile-block"},
                                         {0x109, "multi-start"},
                                         {0x10B, "multi-result"},
                                         {0x10C, "optical-start"},
                                         {0x10D, "optical-result"},
                                         {0x10E, "dc-start"},
                                         {0x10F, "dc-result"}});
    expectCommands(kDeviceService, {{0x06, "device-status"},
                                    {0x07, "angle-start"},
                                    {0x1F, "angle-calibration-start"},
                                    {0x20, "angle-calibration-status"},
                                    {0x21, "angle-detail"},
                                    {0x22, "power-supply-info"}});
}

TEST(SingleMeasurement, GivesTheChannel)
{
    Bench bench;
    EXPECT_EQ(bench.start(terrestrial()), 0);
    EXPECT_EQ(bench.result().lock, 0);
    EXPECT_EQ(bench.result().lock, 0);
    EXPECT_EQ(bench.result().lock, 1); // 300 ms after the start
    const wire::SingleResultResponse result = bench.result();
    EXPECT_EQ(result.ucRet, 0);
    EXPECT_EQ(result.lock, 1);
    EXPECT_EQ(result.stat, 0x0007);
    EXPECT_EQ(result.mesCond, 0x0027);
    EXPECT_EQ(result.bdSys, 0);
    EXPECT_EQ(result.LEVEL, 600u);
    EXPECT_EQ(result.CNR, 200u);
    EXPECT_EQ(result.BER_TOTAL, 2377142u); // 4992 * 6 / 1260 us over 100 ms
    // 8.486e-3 of them (C/N is 19.9995), give or take six standard deviations of 141.
    EXPECT_NEAR(result.BER_ERR, 20173.0, 900.0);
    EXPECT_EQ(result.TSID, 0x7FE0);
    EXPECT_EQ(result.GI, 3);
    EXPECT_EQ(result.LAYER, 3);
    EXPECT_EQ(result.MOD, 1u);
    EXPECT_EQ(bench.stop(), 0);
    EXPECT_EQ(bench.result().ucRet, 5);
}

TEST(SingleMeasurement, WithoutLockGivesLevelAndCnAlone)
{
    Bench bench;
    bench.start(terrestrial());
    const wire::SingleResultResponse result = bench.result();
    EXPECT_EQ(result.lock, 0);
    EXPECT_EQ(result.stat, 0x0001);
    EXPECT_EQ(result.LEVEL, 600u);
    EXPECT_EQ(result.CNR, 200u);
    EXPECT_EQ(result.BER_TOTAL, 0u);
    EXPECT_EQ(result.BER_ERR, 0u);
    EXPECT_EQ(result.TSID, 0);
    EXPECT_EQ(result.GI, 0);
    EXPECT_EQ(result.LAYER, 0);
    EXPECT_EQ(result.MOD, 0u);
}

TEST(SingleMeasurement, BeforeAStartIsRefused)
{
    Bench bench;
    Body expected(44);
    expected[0] = 5;
    EXPECT_EQ(bench.call(kMeasurementService, 0x104, Body(4)), expected);
    EXPECT_EQ(bench.stop(), 0); // nothing to stop is no error
}

TEST(SingleMeasurement, CountsBitsFromTheLock)
{
    std::string text = kCalm;
    text.replace(text.find("lock_ms = 300"), 13, "lock_ms = 250");
    Bench bench(text);
    bench.start(terrestrial());
    bench.result();
    bench.result();
    EXPECT_EQ(bench.result().BER_TOTAL, 1188571u); // 50 ms
    EXPECT_EQ(bench.result().BER_TOTAL, 2377142u); // 100 ms
    bench.status();
    bench.supplyInfo();
    EXPECT_EQ(bench.result().BER_TOTAL, 7131428u); // 300 ms: the other requests take time as well
}

TEST(SingleMeasurement, BitsSaturate)
{
    Bench bench;
    bench.start(terrestrial());
    for (int i = 0; i < 4; ++i)
        bench.result();
    bench.state_.ulSimMs += 10'000'000;
    const wire::SingleResultResponse result = bench.result();
    EXPECT_EQ(result.BER_TOTAL, UINT32_MAX);
    EXPECT_NEAR(result.BER_ERR / 4294967295.0, 8.4876e-3, 1e-4);
}

TEST(SingleMeasurement, OneDecibelOfCableIsSeen)
{
    Bench bench;
    bench.scene_.signals[0].levelDbuv = 30.0;
    bench.scene_.signals[0].cnDb = 60.0;
    bench.start(terrestrial());
    const wire::SingleResultResponse before = bench.result();
    bench.scene_.inputs[0].cable.extraDb = 1.0;
    const wire::SingleResultResponse after = bench.result();
    EXPECT_EQ(before.LEVEL, 300u); // 30.05
    EXPECT_EQ(after.LEVEL, 291u);  // 29.06
    EXPECT_EQ(before.CNR, 198u);   // 30 - 10.234 = 19.77
    EXPECT_EQ(after.CNR, 188u);    // 18.77
}

TEST(SingleMeasurement, LosesAndRegainsLock)
{
    Bench bench;
    bench.start(terrestrial());
    for (int i = 0; i < 3; ++i)
        bench.result();
    ASSERT_EQ(bench.result().lock, 1);
    bench.scene_.signals[0].cnDb = 18.2; // below 19 to lock, above 18 to hold
    EXPECT_EQ(bench.result().lock, 1);
    bench.scene_.signals[0].cnDb = 17.8;
    EXPECT_EQ(bench.result().lock, 0);
    bench.scene_.signals[0].cnDb = 18.2;
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(bench.result().lock, 0);
    bench.scene_.signals[0].cnDb = 19.2;
    EXPECT_EQ(bench.result().lock, 0);
    EXPECT_EQ(bench.result().lock, 0);
    EXPECT_EQ(bench.result().lock, 1); // 300 ms after the last look that was too bad
}

TEST(SingleMeasurement, LocksOnlyToWhatWasAskedFor)
{
    const auto locks = [](Bench& bench) {
        for (int i = 0; i < 10; ++i)
            bench.result();
        return bench.result().lock;
    };
    Bench bench;
    wire::StartRequest start = terrestrial();
    start.usMod = 0; // any
    EXPECT_EQ(bench.start(start), 0);
    EXPECT_EQ(locks(bench), 1);
    start.ulFreq += 6000;
    EXPECT_EQ(bench.start(start), 0);
    EXPECT_EQ(locks(bench), 0);
    EXPECT_EQ(bench.result().CNR, 0u);
    EXPECT_EQ(bench.result().LEVEL, 102u); // receiver noise
    EXPECT_EQ(bench.result().stat, 0x0000);

    start = satellite();
    start.usBdSys = 2; // another generation
    EXPECT_EQ(bench.start(start), 0);
    EXPECT_EQ(locks(bench), 0);
    EXPECT_EQ(bench.result().bdSys, 2); // as asked for
    start.usBdSys = 1;
    start.usMod = 8; // another modulation
    EXPECT_EQ(bench.start(start), 0);
    EXPECT_EQ(locks(bench), 0);
    start.usMod = 16;
    EXPECT_EQ(bench.start(start), 0);
    EXPECT_EQ(locks(bench), 1);
    EXPECT_EQ(bench.result().MOD, 16u);
    EXPECT_EQ(bench.result().stat, 0x000F);
}

TEST(SingleMeasurement, TheOscillatorMustFit)
{
    Bench bench;
    wire::StartRequest start = satellite();
    start.ulLoFreq = 9505000;
    EXPECT_EQ(bench.start(start), 0);
    EXPECT_EQ(bench.result().CNR, 0u);
    start.ulFreq = 1049480; // the intermediate frequency itself
    for (const uint32_t ulLoFreq : {0u, 4294967295u}) {
        start.ulLoFreq = ulLoFreq;
        EXPECT_EQ(bench.start(start), 0);
        EXPECT_EQ(bench.result().CNR, 170u);
    }
}

TEST(SingleMeasurement, SupplyMakesAndBreaksSatelliteReception)
{
    Bench bench;
    bench.start(satellite());
    for (int i = 0; i < 3; ++i)
        bench.result();
    wire::SingleResultResponse result = bench.result();
    EXPECT_EQ(result.lock, 1);
    EXPECT_EQ(result.LEVEL, 751u); // 75 dBuV and noise 17 dB below
    EXPECT_EQ(result.CNR, 170u);
    EXPECT_EQ(result.BER_TOTAL, 8658000u);

    bench.supply(1); // the other polarisation
    result = bench.result();
    EXPECT_EQ(result.lock, 0);
    EXPECT_EQ(result.CNR, 0u);
    EXPECT_EQ(result.LEVEL, 586u); // the noise stays at 58 dBuV, the signal at 50

    bench.supply(0);
    result = bench.result();
    EXPECT_EQ(result.lock, 0);
    EXPECT_EQ(result.LEVEL, 174u); // 9.378 + 8: the receiver alone
    EXPECT_EQ(result.CNR, 0u);

    bench.supply(2);
    EXPECT_EQ(bench.result().lock, 0);
    EXPECT_EQ(bench.result().lock, 0);
    EXPECT_EQ(bench.result().lock, 1);
}

TEST(SingleMeasurement, ASupplySwitchedOffAndOnBetweenTwoResultsCostsTheLock)
{
    Bench bench;
    bench.start(satellite());
    for (int i = 0; i < 4; ++i)
        bench.result();
    bench.supply(0);
    bench.supply(2);
    EXPECT_EQ(bench.result().lock, 0);
}

TEST(SingleMeasurement, GoesOnAtTheOtherInput)
{
    Bench bench;
    bench.start(terrestrial());
    for (int i = 0; i < 4; ++i)
        bench.result();
    EXPECT_EQ(bench.input(1), 0);
    wire::SingleResultResponse result = bench.result();
    EXPECT_EQ(result.lock, 0);
    EXPECT_EQ(result.LEVEL, 400u);
    bench.result();
    EXPECT_EQ(bench.result().lock, 1);
    EXPECT_EQ(bench.input(0), 0);
    EXPECT_EQ(bench.input(1), 0);
    EXPECT_EQ(bench.result().lock, 0);
}

TEST(SingleMeasurement, BelowThresholdNeverLocks)
{
    Bench bench;
    bench.input(1);
    bench.start(catv());
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(bench.result().lock, 0);
    bench.scene_.signals[3].cnDb = 28.0;
    EXPECT_EQ(bench.result().lock, 1); // lock_ms is 0
    EXPECT_EQ(bench.result().MOD, 4096u);
}

TEST(SingleMeasurement, CarriersWithoutModulationHaveLevelAndCn)
{
    Bench bench;
    bench.input(1);
    wire::StartRequest start{};
    start.ucStartStop = 1;
    start.ulFreq = 451250;
    start.usBdSys = 10;
    for (const uint16_t usMod : std::initializer_list<uint16_t>{0, 8192}) {
        start.usMod = usMod;
        EXPECT_EQ(bench.start(start), 0);
        const wire::SingleResultResponse result = bench.result();
        EXPECT_EQ(result.LEVEL, 795u);
        EXPECT_EQ(result.CNR, 500u);
        EXPECT_EQ(result.lock, 0);
    }
}

TEST(SingleMeasurement, AStartBeginsAnew)
{
    Bench bench;
    bench.start(terrestrial());
    for (int i = 0; i < 3; ++i)
        bench.result();
    ASSERT_EQ(bench.result().lock, 1);
    bench.start(terrestrial());
    EXPECT_EQ(bench.result().lock, 0);
}

TEST(SingleMeasurement, RefusesUnusableConditions)
{
    Bench bench;
    const auto refused = [&](auto change) {
        wire::StartRequest start = terrestrial();
        change(start);
        return bench.start(start) == 2;
    };
    EXPECT_TRUE(refused([](auto& s) { s.ulFreq = 0; }));
    EXPECT_TRUE(refused([](auto& s) { s.ulFreq = 9999; }));
    EXPECT_FALSE(refused([](auto& s) { s.ulFreq = 10000; }));
    EXPECT_FALSE(refused([](auto& s) { s.ulFreq = 3224000; }));
    EXPECT_TRUE(refused([](auto& s) { s.ulFreq = 3224001; }));
    EXPECT_TRUE(refused([](auto& s) { s.ulFreq = UINT32_MAX; }));
    EXPECT_TRUE(refused([](auto& s) { s.ulLoFreq = 473143; }));
    EXPECT_TRUE(refused([](auto& s) { s.ulLoFreq = 10678000; }));
    EXPECT_TRUE(refused([](auto& s) { s.usBdSys = 7; }));
    EXPECT_TRUE(refused([](auto& s) { s.usBdSys = 65535; }));
    EXPECT_TRUE(refused([](auto& s) { s.usMod = 1024; }));
    EXPECT_TRUE(refused([](auto& s) { s.usMod = 4; }));
    EXPECT_TRUE(refused([](auto& s) { s.ucSupplyLevel = 3; }));
    EXPECT_TRUE(refused([](auto& s) { s.ucSupplyKind = 1; }));
    EXPECT_TRUE(refused([](auto& s) { s.ucStartStop = 2; }));
    EXPECT_FALSE(refused([](auto& s) { s.usBand = 65535; }));
    EXPECT_FALSE(refused([](auto& s) { s.ucDispType = 255; }));
    EXPECT_FALSE(refused([](auto& s) { s.ucOutputEnb = 255; }));
}

TEST(SingleMeasurement, ARefusedStartLeavesTheRunningOneAlone)
{
    Bench bench;
    bench.start(terrestrial());
    for (int i = 0; i < 4; ++i)
        bench.result();
    wire::StartRequest bad = satellite();
    bad.usBdSys = 8;
    EXPECT_EQ(bench.start(bad), 2);
    EXPECT_EQ(bench.result().lock, 1);
    EXPECT_EQ(bench.supplyInfo().ucPowerSupply, 0);
}

TEST(PowerSupply, IsReadBack)
{
    Bench bench;
    struct {
        uint8_t code, volt;
        uint16_t adVal;
        uint32_t current, power;
    } const cases[] = {{0, 0, 0, 0, 0},
                       {1, 11, 563, 160, 1760},
                       {2, 15, 767, 160, 2400},
                       {3, 11, 563, 160, 1760},
                       {4, 15, 767, 160, 2400}};
    for (const auto& expected : cases) {
        EXPECT_EQ(bench.supply(expected.code), 0);
        const wire::PowerSupplyInfoResponse info = bench.supplyInfo();
        EXPECT_EQ(info.ucRet, 0);
        EXPECT_EQ(info.ucPowerSupply, expected.code);
        EXPECT_EQ(info.ucVolt, expected.volt);
        EXPECT_EQ(info.usAdVal, expected.adVal);
        EXPECT_EQ(info.ulCurrentM, expected.current);
        EXPECT_EQ(info.ulElecPowerM, expected.power);
    }
    EXPECT_EQ(bench.supply(5), 2);
    EXPECT_EQ(bench.supply(255), 2);
    EXPECT_EQ(bench.supplyInfo().ucPowerSupply, 4); // as before
}

TEST(PowerSupply, ComesWithAStartAndStaysAfterTheStop)
{
    Bench bench;
    bench.start(satellite());
    EXPECT_EQ(bench.supplyInfo().ucPowerSupply, 2);
    bench.stop();
    EXPECT_EQ(bench.supplyInfo().ucPowerSupply, 2);
    bench.start(terrestrial());
    EXPECT_EQ(bench.supplyInfo().ucPowerSupply, 0);
}

TEST(PowerSupply, FaultsAreReported)
{
    for (const bool shorted : {true, false}) {
        Bench bench;
        bench.scene_.inputs[0].lnb.shortCircuit = shorted;
        bench.scene_.inputs[0].lnb.ulCurrentMa = shorted ? 0 : 501;
        EXPECT_EQ(bench.start(satellite()), 0);
        Body expected(44);
        expected[0] = 3;
        EXPECT_EQ(bench.call(kMeasurementService, 0x104, Body(4)), expected);
        const wire::PowerSupplyInfoResponse info = bench.supplyInfo();
        EXPECT_EQ(info.ucRet, 0);
        EXPECT_EQ(info.ucPowerSupply, 2);
        EXPECT_EQ(info.ucVolt, 0);
        EXPECT_EQ(info.usAdVal, 0);
        EXPECT_EQ(info.ulCurrentM, 500u);
        EXPECT_EQ(info.ulElecPowerM, 0u);
        EXPECT_EQ(bench.status().usInputStat, 0x0012);
        bench.supply(0);
        EXPECT_EQ(bench.result().ucRet, 0);
        EXPECT_EQ(bench.status().usInputStat, 0x0000);
    }
}

TEST(MeasurementStatus, TellsMeasurementLockInputAndSupply)
{
    Bench bench;
    EXPECT_EQ(bench.status().ulMeasStat, 0u);
    EXPECT_EQ(bench.status().usInputStat, 0);
    bench.start(terrestrial());
    EXPECT_EQ(bench.status().ulMeasStat, 1u);
    EXPECT_EQ(bench.status().ulMeasStat, 1u);
    EXPECT_EQ(bench.status().ulMeasStat, 3u); // 300 ms after the start, without any result read
    bench.stop();
    EXPECT_EQ(bench.status().ulMeasStat, 0u);
    bench.input(1);
    EXPECT_EQ(bench.status().usInputStat, 0x0001);
    bench.supply(1);
    EXPECT_EQ(bench.status().usInputStat, 0x0003);
    bench.supply(4);
    EXPECT_EQ(bench.status().usInputStat, 0x000F);
    EXPECT_EQ(bench.call(kMeasurementService, 0x1C, {1, 0, 0, 0}), Body(4));
    EXPECT_EQ(bench.status().usInputStat, 0x002F);
    EXPECT_EQ(bench.call(kMeasurementService, 0x1C, {0, 0, 0, 0}), Body(4));
    EXPECT_EQ(bench.status().usInputStat, 0x000F);
}

TEST(Input, RefusesOthers)
{
    Bench bench;
    EXPECT_EQ(bench.input(1), 0);
    EXPECT_EQ(bench.input(2), 2);
    EXPECT_EQ(bench.input(255), 2);
    EXPECT_EQ(bench.status().usInputStat, 0x0001);
}

TEST(MixBandSupply, RefusesOthers)
{
    Bench bench;
    EXPECT_EQ(bench.call(kMeasurementService, 0x1C, {2, 0, 0, 0}), Body({2, 0, 0, 0}));
    EXPECT_EQ(bench.call(kMeasurementService, 0x1C, {255, 0, 0, 0}), Body({2, 0, 0, 0}));
}

TEST(ShortRequests, AreParameterErrorsAndChangeNothing)
{
    const auto check = [](const Service& service, uint16_t usCmd, size_t requestSize, size_t responseSize) {
        for (size_t size = 0; size < requestSize; ++size) {
            Bench bench;
            const State before = bench.state_;
            Body expected(responseSize);
            expected[0] = 2;
            EXPECT_EQ(bench.call(service, usCmd, Body(size, 1)), expected) << usCmd << " " << size;
            bench.state_.ulSimMs = before.ulSimMs;
            EXPECT_EQ(toBody(bench.state_), toBody(before));
        }
    };
    check(kMeasurementService, 0x15, 4, 4);
    check(kMeasurementService, 0x17, 4, 12);
    check(kMeasurementService, 0x1C, 4, 4);
    check(kMeasurementService, 0x100, 8, 4);
    check(kMeasurementService, 0x103, 40, 4);
    check(kMeasurementService, 0x104, 4, 44);
    check(kMeasurementService, 0x105, 8, 4);
    check(kMeasurementService, 0x106, 8, 44);
    check(kMeasurementService, 0x107, 40, 4);
    check(kMeasurementService, 0x108, 8, 412);
    check(kMeasurementService, 0x109, 1292, 4);
    check(kMeasurementService, 0x10B, 12, 40);
    check(kMeasurementService, 0x10C, 12, 4);
    check(kMeasurementService, 0x10D, 4, 8);
    check(kMeasurementService, 0x10E, 8, 4);
    check(kMeasurementService, 0x10F, 4, 8);
    check(kDeviceService, 0x07, 4, 4);
    check(kDeviceService, 0x1F, 4, 4);
    check(kDeviceService, 0x20, 4, 44);
    check(kDeviceService, 0x21, 4, 60);
    check(kDeviceService, 0x22, 4, 16);
}

TEST(LongRequests, AreTakenAsFarAsTheyMatter)
{
    Bench bench;
    Body body = toBody(terrestrial());
    body.resize(1292, 0xFF);
    EXPECT_EQ(bench.call(kMeasurementService, 0x103, body), Body(4));
    EXPECT_EQ(bench.call(kMeasurementService, 0x104, Body(1292, 0xFF)).size(), 44u);
}

TEST(Determinism, SameSeedAndCallsGiveTheSameBytes)
{
    const auto session = [](Bench& bench) {
        Body all;
        const auto keep = [&](const Body& body) { all.insert(all.end(), body.begin(), body.end()); };
        bench.start(satellite());
        for (int i = 0; i < 20; ++i)
            keep(bench.call(kMeasurementService, 0x104, Body(4)));
        bench.input(1);
        bench.start(catv());
        for (int i = 0; i < 20; ++i)
            keep(bench.call(kMeasurementService, 0x104, Body(4)));
        return all;
    };
    Bench first(defaultScene());
    Bench second(defaultScene());
    const Body bytes = session(first);
    EXPECT_EQ(session(second), bytes);
    Scene other = defaultScene();
    other.seed = 2;
    Bench third(other);
    EXPECT_NE(session(third), bytes);
}

TEST(Determinism, AServiceThatComesBackGoesOn)
{
    Bench whole(defaultScene());
    whole.start(satellite());
    for (int i = 0; i < 10; ++i)
        whole.result();

    Bench before(defaultScene());
    before.start(satellite());
    for (int i = 0; i < 5; ++i)
        before.result();
    Bench after(defaultScene()); // another process: the scene read again, the state shared
    after.state_ = before.state_;
    for (int i = 0; i < 5; ++i)
        after.result();
    EXPECT_EQ(toBody(after.result()), toBody(whole.result()));
}

TEST(DefaultScene, LocksWhatItShould)
{
    const Scene scene = defaultScene();
    for (const Signal& signal : scene.signals) {
        Bench bench(scene);
        bench.input(signal.ucInput);
        wire::StartRequest start{};
        start.ucStartStop = 1;
        start.ulFreq = signal.ulFrequencyKhz;
        start.ulLoFreq = signal.ulLoKhz;
        start.usBdSys = static_cast<uint16_t>(signal.system);
        start.ucSupplyLevel = signal.supply == SupplyNeed::volt15   ? 2
                              : signal.supply == SupplyNeed::volt11 ? 1
                                                                    : 0;
        EXPECT_EQ(bench.start(start), 0);
        int locked = 0;
        for (int i = 0; i < 60; ++i)
            locked += bench.result().lock;
        if (signal.system == System::level || signal.ulFrequencyKhz == 575143) { // channel 30: too weak
            EXPECT_EQ(locked, 0) << signal.ulFrequencyKhz;
            EXPECT_GT(bench.result().CNR, 50u) << signal.ulFrequencyKhz;
        } else if (signal.ulFrequencyKhz == 563143) { // channel 28: at the edge
            EXPECT_GT(locked, 0);
            EXPECT_NEAR(bench.result().CNR, 193.0, 10.0);
        } else {
            EXPECT_GT(locked, 50) << signal.ulFrequencyKhz;
        }
    }
}

// Requests of every command that a service takes, with the sizes of their responses. That of 0x106 varies.
struct Exchange {
    const Service& service;
    uint16_t usCmd;
    Body request;
    size_t responseSize;
};

template <class Request>
Body with(Request request, auto change)
{
    change(request);
    return toBody(request);
}

std::vector<Exchange> everyExchange()
{
    const auto& meas = kMeasurementService;
    const auto& dev = kDeviceService;
    const auto part = [](uint8_t ucKind) {
        return with(wire::MultiMeasRequest{}, [&](auto& request) {
            request.ucKind = ucKind;
            request.ucRegCount = 2;
            request.channels[0].ulFreq = 521143;
            request.channels[1].ulFreq = 563143;
        });
    };
    const Body optical = with(wire::OptMeasRequest{}, [](auto& request) {
        request.ucStartStop = 1;
        request.ulWaveLength = 1550;
    });
    return {{meas, 0x100, {0, 0, 0, 0, 1, 0, 0, 0}, 4},
            {meas, 0x15, {2, 0, 0, 0}, 4},
            {meas, 0x1C, {1, 0, 0, 0}, 4},
            {meas, 0x17, Body(4), 12},
            {dev, 0x22, Body(4), 16},
            {meas, 0x103, toBody(catv()), 4},
            {meas, 0x104, Body(4), 44},
            {meas, 0x105, {0, 0, 0, 0, 1, 0, 0xE8, 0x03}, 4},
            {meas, 0x106, {0, 0, 0, 0, 0xFF, 0x01, 0, 0}, 0},
            {meas, 0x104, Body(4), 44},
            {meas, 0x104, Body(4), 44},
            {meas, 0x106, {0, 0, 0, 0, 0xFF, 0x01, 0, 0}, 0},
            {meas, 0x106, {0, 0, 0, 0, 0xFF, 0xFF, 0, 0}, 0},
            {meas, 0x103, Body(40), 4},
            {meas, 0x100, Body(8), 4},
            {meas, 0x107, with(terrestrial(), [](auto& start) { start.ulFreq = 551143; }), 4},
            {meas, 0x108, Body(8), 412},
            {meas, 0x107, Body(40), 4},
            {meas, 0x109, part(3), 4},
            {meas, 0x109, part(1), 4},
            {meas, 0x10B, Body(12), 40},
            {meas, 0x109, part(2), 4},
            {meas, 0x10B, {0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0}, 40},
            {meas, 0x10B, {0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0}, 40},
            {meas, 0x109, Body(1292), 4},
            {meas, 0x10C, optical, 4},
            {meas, 0x10D, Body(4), 8},
            {meas, 0x10E, {0, 0, 0, 0, 1, 0, 0, 0}, 4},
            {meas, 0x10F, Body(4), 8},
            {meas, 0x16, Body(4), 4},
            {meas, 0x18, Body(4), 8},
            {meas, 0x19, {1, 0, 0, 0}, 4},
            {meas, 0x0E, {1, 0, 0, 0}, 4},
            {meas, 0x0F, {1, 0, 0, 0}, 4},
            {meas, 0x1D, Body(4), 4},
            {meas, 0x1E, Body(4), 4},
            {dev, 0x06, Body(4), 10},
            {dev, 0x07, {1, 0, 0, 0}, 4},
            {dev, 0x21, Body(4), 60},
            {dev, 0x1F, Body(4), 4},
            {dev, 0x20, Body(4), 44},
            {dev, 0x06, Body(4), 10},
            {meas, 0x16, Body(4), 4},
            {meas, 0x19, {1, 0, 0, 0}, 4},
            {meas, 0x0E, {1, 0, 0, 0}, 4},
            {meas, 0x18, Body(4), 8},
            {meas, 0x0F, {1, 0, 0, 0}, 4},
            {meas, 0x1D, Body(4), 4},
            {meas, 0x1E, Body(4), 4}};
}

TEST(Determinism, HoldsForEveryCommandWhoeverServesIt)
{
    const auto session = [](uint64_t seed, bool comesBack) {
        Scene scene = defaultScene();
        scene.seed = seed;
        scene.clockMs = 500;
        Body all;
        State state{};
        Bench bench(scene);
        for (int round = 0; round < 5; ++round) {
            for (const Exchange& exchange : everyExchange()) {
                Bench other(scene);
                Bench& serving = comesBack ? other : bench;
                serving.state_ = state;
                const Body body = serving.call(exchange.service, exchange.usCmd, exchange.request);
                state = serving.state_;
                all.insert(all.end(), body.begin(), body.end());
            }
        }
        return all;
    };
    EXPECT_EQ(session(1, true), session(1, false));
    EXPECT_NE(session(2, false), session(1, false));
}

TEST(Exchanges, CoverEveryCommand)
{
    std::set<uint16_t> commands;
    for (const Exchange& exchange : everyExchange())
        commands.insert(exchange.usCmd);
    EXPECT_EQ(commands.size(), kMeasurementService.commands.size() + kDeviceService.commands.size());
}

// Whatever a client sends, a service answers with a body of the right size and stays in its bounds.
RC_GTEST_PROP(AnyRequest, IsAnswered, ())
{
    Bench bench(defaultScene());
    const std::vector<Exchange> exchanges = everyExchange();
    const auto count = *rc::gen::inRange(1, 60);
    for (int i = 0; i < count; ++i) {
        const Exchange& exchange = exchanges[*rc::gen::inRange<size_t>(0, exchanges.size())];
        Body request = exchange.request;
        switch (*rc::gen::inRange(0, 4)) {
        case 0: // anything
            request = *rc::gen::container<Body>(rc::gen::arbitrary<uint8_t>());
            break;
        case 1: // one byte of it changed
            request[*rc::gen::inRange<size_t>(0, std::min<size_t>(request.size(), 44))] =
                *rc::gen::arbitrary<uint8_t>();
            break;
        default:
            break;
        }
        bench.state_.ulSimMs += *rc::gen::inRange<uint64_t>(0, 3000);
        bench.state_.device.standby = Standby::none; // a request before may have sent it to sleep
        const Body response = bench.call(exchange.service, exchange.usCmd, request);
        if (exchange.usCmd == 0x106) {
            const auto result = bodyAs<wire::ConstaResponse>(response);
            RC_ASSERT(result.CONS_NUM <= 624);
            RC_ASSERT(response.size() == 44u + 2u * result.CONS_NUM);
        } else {
            RC_ASSERT(response.size() == exchange.responseSize);
        }
        const bool hasResult = exchange.usCmd != 0x06; // the device status has none
        RC_ASSERT(!hasResult || response[0] == 0 || (response[0] >= 2 && response[0] <= 5));
        RC_ASSERT(bench.state_.ucInput < 2);
        RC_ASSERT(bench.state_.ucSupplyCode <= 4);
        RC_ASSERT(bench.state_.list.usCount <= 256);
        if ((exchange.usCmd == 0x104 || exchange.usCmd == 0x10B || exchange.usCmd == 0x106) &&
            response[0] == 0) {
            const auto result = bodyAs<wire::SingleResultResponse>(response); // alike so far
            RC_ASSERT(result.lock <= 1);
            RC_ASSERT(result.BER_ERR <= result.BER_TOTAL);
            RC_ASSERT(result.CNR < 700u);
        }
    }
}

} // namespace
} // namespace vmeter

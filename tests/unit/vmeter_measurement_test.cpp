// The measurement and device services of the virtual meter: their handlers, called as the service loop does.
#include "meas/wire.h"
#include "service.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <string>

namespace vmeter {
namespace {

namespace wire = vx63::wire;

// No fluctuation: the readings are those of the formulas.
const char* const kCalm = R"(
level_sigma_db = 0
cn_sigma_db = 0
noise_figure_db = 8

[[input]]
id = 0
lnb = { current_ma = 160 }

[[signal]]
input = 0
frequency_khz = 473143
system = "terrestrial"
carriers = "64QAM"
guard_interval = "1/4"
layers = 3
level_dbuv = 60
cn_db = 20
tsid = 0x7FE0
lock_ms = 300

[[signal]]
input = 0
frequency_khz = 11727480
lo_khz = 10678000
system = "satellite"
modulation = "8PSK"
level_dbuv = 75
cn_db = 17
tsid = 0x4010
supply = "15V"
lock_ms = 300

[[signal]]
input = 1
frequency_khz = 473143
system = "terrestrial"
carriers = "QPSK"
level_dbuv = 40
cn_db = 20
lock_ms = 300

[[signal]]
input = 1
frequency_khz = 231000
system = "catv"
modulation = "256QAM"
level_dbuv = 70
cn_db = 26
lock_ms = 0

[[signal]]
input = 1
frequency_khz = 451250
system = "level"
level_dbuv = 79.5
cn_db = 50
)";

// The meter as its service loop drives it: the clock goes on, then the handler answers.
class Bench {
public:
    explicit Bench(Scene scene) : scene_(std::move(scene)) {}
    explicit Bench(const std::string& text = kCalm) : Bench(parseScene(text, "test")) {}

    Body call(const Service& service, uint16_t usCmd, const Body& request)
    {
        const auto command = std::ranges::find(service.commands, usCmd, &Command::usCmd);
        if (command == service.commands.end())
            throw std::logic_error("no such command");
        state_.ulSimMs += scene_.clockMs;
        Meter meter{scene_, state_};
        return command->handler(meter, request);
    }

    uint8_t start(const wire::StartRequest& start)
    {
        return call(kMeasurementService, 0x103, toBody(start))[0];
    }
    uint8_t stop()
    {
        Body body(40);
        return call(kMeasurementService, 0x103, body)[0];
    }
    uint8_t input(uint8_t ucInput)
    {
        return call(kMeasurementService, 0x100, {0, 0, 0, 0, ucInput, 0, 0, 0})[0];
    }
    uint8_t supply(uint8_t ucCode) { return call(kMeasurementService, 0x15, {ucCode, 0, 0, 0})[0]; }
    wire::SingleResultResponse result()
    {
        const Body body = call(kMeasurementService, 0x104, Body(4));
        EXPECT_EQ(body.size(), 44u);
        return bodyAs<wire::SingleResultResponse>(body);
    }
    wire::MeasStatusResponse status()
    {
        return bodyAs<wire::MeasStatusResponse>(call(kMeasurementService, 0x17, Body(4)));
    }
    wire::PowerSupplyInfoResponse supplyInfo()
    {
        return bodyAs<wire::PowerSupplyInfoResponse>(call(kDeviceService, 0x22, Body(4)));
    }

    Scene scene_;
    State state_{};
};

wire::StartRequest terrestrial()
{
    wire::StartRequest start{};
    start.ucStartStop = 1;
    start.ulFreq = 473143;
    start.usMod = 1;
    start.usCondition = 0x0027;
    return start;
}

wire::StartRequest satellite()
{
    wire::StartRequest start{};
    start.ucStartStop = 1;
    start.ulFreq = 11727480;
    start.ulLoFreq = 10678000;
    start.usBdSys = 1;
    start.ucSupplyLevel = 2;
    return start;
}

wire::StartRequest catv()
{
    wire::StartRequest start{};
    start.ucStartStop = 1;
    start.ulFreq = 231000;
    start.usBdSys = 3;
    start.usMod = 5120;
    return start;
}

TEST(VmeterServices, HaveTheirIdsAndCommands)
{
    EXPECT_EQ(kMeasurementService.ucProcId, 12);
    EXPECT_STREQ(kMeasurementService.name, "meas");
    EXPECT_EQ(kDeviceService.ucProcId, 6);
    EXPECT_STREQ(kDeviceService.name, "dev");
    const std::pair<uint16_t, std::string> commands[] = {{0x15, "power-supply"},    {0x17, "meas-status"},
                                                         {0x1C, "mix-band-supply"}, {0x100, "set-input"},
                                                         {0x103, "single-start"},   {0x104, "single-result"}};
    for (const auto& [code, name] : commands) {
        const auto found = std::ranges::find(kMeasurementService.commands, code, &Command::usCmd);
        ASSERT_NE(found, kMeasurementService.commands.end()) << name;
        EXPECT_EQ(found->name, name);
    }
    const auto info = std::ranges::find(kDeviceService.commands, 0x22, &Command::usCmd);
    ASSERT_NE(info, kDeviceService.commands.end());
    EXPECT_STREQ(info->name, "power-supply-info");
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

// Whatever a client sends, a service answers with a body of the right size and stays in its bounds.
RC_GTEST_PROP(AnyRequest, IsAnswered, ())
{
    Bench bench(defaultScene());
    const auto count = *rc::gen::inRange(1, 30);
    for (int i = 0; i < count; ++i) {
        const bool device = *rc::gen::inRange(0, 8) == 0;
        const Service& service = device ? kDeviceService : kMeasurementService;
        const auto index = *rc::gen::inRange<size_t>(0, service.commands.size());
        const Command& command = service.commands[index];
        Body request = *rc::gen::container<Body>(rc::gen::arbitrary<uint8_t>());
        if (command.usCmd == 0x103 && *rc::gen::arbitrary<bool>())
            request = toBody(*rc::gen::element(terrestrial(), satellite(), catv()));
        const Body response = bench.call(service, command.usCmd, request);
        RC_ASSERT(response.size() >= 4u);
        RC_ASSERT(bench.state_.ucInput < 2);
        RC_ASSERT(bench.state_.ucSupplyCode <= 4);
        if (command.usCmd == 0x104 && response[0] == 0) {
            const auto result = bodyAs<wire::SingleResultResponse>(response);
            RC_ASSERT(result.lock <= 1);
            RC_ASSERT(result.BER_ERR <= result.BER_TOTAL);
            RC_ASSERT(result.CNR < 700u);
        }
    }
}

} // namespace
} // namespace vmeter

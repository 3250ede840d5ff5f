// The physics of the virtual meter against values worked out by hand.
#include "model/cable.h"
#include "signal/bit_errors.h"
#include "signal/decibel.h"
#include "signal/power_supply.h"
#include "signal/random.h"
#include "signal/reception.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

namespace vmeter {
namespace {

Signal terrestrial(double levelDbuv = 60.0, double cnDb = 30.0)
{
    Signal signal{};
    signal.ulFrequencyKhz = 473143;
    signal.system = System::terrestrial;
    signal.modulation = Modulation::ofdm;
    signal.carriers = Modulation::qam64;
    signal.bandwidthKhz = 5570.0;
    signal.levelDbuv = levelDbuv;
    signal.cnDb = cnDb;
    signal.ucGuardInterval = 2;
    return signal;
}

Signal satellite(uint32_t ulIfKhz, SupplyNeed need)
{
    Signal signal{};
    signal.ulFrequencyKhz = ulIfKhz + 10678000;
    signal.ulLoKhz = 10678000;
    signal.system = System::satellite;
    signal.modulation = Modulation::psk8;
    signal.bandwidthKhz = 28860.0;
    signal.levelDbuv = 75.0;
    signal.cnDb = 17.0;
    signal.supply = need;
    return signal;
}

Reception receiveAt(const Scene& scene, uint32_t ifKhz, uint8_t ucSupply = 0, uint8_t ucInput = 0)
{
    return receive(scene, ucInput, supplyState(scene, ucInput, ucSupply), ifKhz, System::terrestrial);
}

TEST(Decibel, PowersAdd)
{
    EXPECT_NEAR(toDb(fromDb(20.0) + fromDb(20.0)), 23.0103, 1e-4);
    EXPECT_NEAR(toDb(0.001), -30.0, 1e-12);
    EXPECT_EQ(toDb(0.0), -INFINITY);
}

TEST(Cable, FollowsRootAndLinearTerm)
{
    // 0.6 * sqrt(400) + 0.002 * 400 = 12.8 and 0.6 * sqrt(1600) + 0.002 * 1600 = 27.2
    Cable cable = cableThrough(400, 12.8, 1600, 27.2);
    EXPECT_NEAR(cable.skin, 0.6, 1e-12);
    EXPECT_NEAR(cable.dielectric, 0.002, 1e-12);
    cable.lengthM = 25;
    cable.extraDb = 1.5;
    EXPECT_NEAR(cableLossDb(cable, 900), 1.5 + (0.6 * 30 + 0.002 * 900) / 4, 1e-12);
}

TEST(Cable, OnePointIsSkinEffect)
{
    Cable cable = cableThrough(100, 6, 100, 6);
    cable.lengthM = 100;
    EXPECT_NEAR(cableLossDb(cable, 400), 12.0, 1e-12);
    EXPECT_EQ(cable.dielectric, 0.0);
}

TEST(Noise, IsThermalNoiseAt75Ohm)
{
    // 1.380649e-23 J/K * 290 K * 6 MHz * 75 ohm = 1.80175e-12 V^2, that is 1.3423 uV
    EXPECT_NEAR(thermalNoiseDbuv(6000), 2.5569, 1e-4);
    EXPECT_NEAR(thermalNoiseDbuv(28860), 9.3784, 1e-4);
    EXPECT_NEAR(thermalNoiseDbuv(200), -12.2143, 1e-4);
}

TEST(BitErrorRatio, FollowsTheTextbook)
{
    EXPECT_NEAR(bitErrorRatio(Modulation::bpsk, 5), 5.9539e-3, 1e-7);
    EXPECT_NEAR(bitErrorRatio(Modulation::qpsk, 10), 7.8270e-4, 1e-8);
    EXPECT_NEAR(bitErrorRatio(Modulation::psk8, 12), 1.03993e-2, 1e-6);
    EXPECT_NEAR(bitErrorRatio(Modulation::qam16, 14), 9.37561e-3, 1e-7);
    EXPECT_NEAR(bitErrorRatio(Modulation::apsk16, 14), 9.37561e-3, 1e-7);
    EXPECT_NEAR(bitErrorRatio(Modulation::apsk32, 18), 4.43621e-3, 1e-7);
    EXPECT_NEAR(bitErrorRatio(Modulation::qam64, 20), 8.48643e-3, 1e-7);
    EXPECT_NEAR(bitErrorRatio(Modulation::qam256, 26), 7.13711e-3, 1e-7);
    EXPECT_EQ(bitErrorRatio(Modulation::qam64, 60), 0.0);
    EXPECT_EQ(bitErrorRatio(Modulation::bpsk, -INFINITY), 0.5);
}

RC_GTEST_PROP(BitErrorRatio, NeverRisesWithCn, ())
{
    const auto modulation =
        *rc::gen::element(Modulation::bpsk, Modulation::qpsk, Modulation::psk8, Modulation::apsk16,
                          Modulation::apsk32, Modulation::qam64, Modulation::qam256);
    const double cn = *rc::gen::inRange(-300, 500) / 10.0;
    const double more = cn + *rc::gen::inRange(0, 200) / 10.0;
    RC_ASSERT(bitErrorRatio(modulation, more) <= bitErrorRatio(modulation, cn));
    RC_ASSERT(bitErrorRatio(modulation, cn) <= 0.5);
}

TEST(Modulation, BitsAreThoseOfTheSettingsTables)
{
    EXPECT_EQ(modulationBits(System::terrestrial), 1);
    EXPECT_EQ(modulationBits(System::satellite), 26);
    EXPECT_EQ(modulationBits(System::satellite2), 232);
    EXPECT_EQ(modulationBits(System::catv), 5120);
    EXPECT_EQ(modulationBits(System::jsat), 8);
    EXPECT_EQ(modulationBits(System::jsat2), 232);
    EXPECT_EQ(modulationBits(System::skyp), 4096);
    EXPECT_EQ(modulationBits(System::catv2), 5120);
    EXPECT_EQ(modulationBits(System::level), 8192);
    EXPECT_EQ(modulationBit(System::satellite, Modulation::psk8), 16);
    EXPECT_EQ(modulationBit(System::satellite2, Modulation::psk8), 32);
}

TEST(Modulation, SystemsHaveTheirCodes)
{
    for (const uint16_t code : std::initializer_list<uint16_t>{0, 1, 2, 3, 4, 5, 6, 9, 10})
        EXPECT_NE(findSystem(code), nullptr) << code;
    for (const uint16_t code : std::initializer_list<uint16_t>{7, 8, 11, 17, 35, 65535})
        EXPECT_EQ(findSystem(code), nullptr) << code;
}

TEST(BitRate, CountsSymbolsAndBits)
{
    Signal signal = satellite(1049480, SupplyNeed::any);
    EXPECT_DOUBLE_EQ(bitRate(signal), 28.86e6 * 3);
    signal = terrestrial();
    // 4992 carriers of 6 bits every 1008 us * 9/8 = 1134 us
    EXPECT_NEAR(bitRate(signal), 26412698.4, 0.1);
    signal.ucGuardInterval = 0;
    EXPECT_NEAR(bitRate(signal), 4992 * 6 / (1008e-6 * 33 / 32), 0.1);
    signal.ucGuardInterval = 3;
    signal.carriers = Modulation::qpsk;
    EXPECT_NEAR(bitRate(signal), 4992 * 2 / 1260e-6, 0.1);
    signal.modulation = Modulation::none;
    EXPECT_EQ(bitRate(signal), 0.0);
}

TEST(Intermediate, IsTheDifferenceToTheOscillator)
{
    EXPECT_EQ(intermediateKhz(473143, 0), 473143u);
    EXPECT_EQ(intermediateKhz(473143, 4294967295u), 473143u);
    EXPECT_EQ(intermediateKhz(11727480, 10678000), 1049480u);
    EXPECT_EQ(intermediateKhz(10678000, 10678000), 0u);
    EXPECT_EQ(intermediateKhz(1, 4294967294u), 0u);
}

TEST(Supply, TranslatesTheTwoBytesOfAStart)
{
    EXPECT_EQ(supplyCode(0, 0), 0);
    EXPECT_EQ(supplyCode(1, 0), 1);
    EXPECT_EQ(supplyCode(2, 0), 2);
    EXPECT_EQ(supplyCode(1, 1), 3);
    EXPECT_EQ(supplyCode(2, 1), 4);
    EXPECT_GT(supplyCode(0, 1), kSupplyCodeMax);
    EXPECT_GT(supplyCode(3, 0), kSupplyCodeMax);
    EXPECT_GT(supplyCode(1, 2), kSupplyCodeMax);
    EXPECT_GT(supplyCode(255, 255), kSupplyCodeMax);
}

TEST(Supply, LimitsAtHalfAnAmpere)
{
    Scene scene;
    scene.inputs[0].lnb.ulCurrentMa = 500;
    EXPECT_FALSE(supplyState(scene, 0, 2).fault);
    scene.inputs[0].lnb.ulCurrentMa = 501;
    EXPECT_TRUE(supplyState(scene, 0, 2).fault);
    EXPECT_EQ(supplyState(scene, 0, 2).ucVolt, 0);
    EXPECT_FALSE(supplyState(scene, 0, 0).fault);
    EXPECT_FALSE(supplyState(scene, 1, 2).fault);
}

TEST(Reception, LevelIsSourceLessCableAndCnTheSumOfNoises)
{
    Scene scene;
    scene.noiseFigureDb = 8.0;
    scene.inputs[0].cable.extraDb = 20.0;
    scene.signals = {terrestrial(50.0, 25.0)};
    const Reception reception = receiveAt(scene, 473143);
    // Carrier 30 dBuV; noise of the source 5, of the receiver 2.234 + 8 = 10.234: together 11.372.
    ASSERT_EQ(reception.wanted, &scene.signals[0]);
    EXPECT_NEAR(reception.cnDb, 30.0 - 11.372, 0.001);
    EXPECT_NEAR(reception.levelDbuv, 30.059, 0.001);
}

TEST(Reception, WithoutSignalIsReceiverNoise)
{
    const Scene scene;
    const Reception reception = receiveAt(scene, 473143);
    EXPECT_EQ(reception.wanted, nullptr);
    EXPECT_EQ(reception.cnDb, -INFINITY);
    EXPECT_NEAR(reception.levelDbuv, 10.234, 0.001);
}

TEST(Reception, OneMoreDecibelOfCableIsSeen)
{
    Scene scene;
    scene.signals = {terrestrial(35.0, 60.0)};
    const Reception before = receiveAt(scene, 473143);
    scene.inputs[0].cable.extraDb = 1.0;
    const Reception after = receiveAt(scene, 473143);
    EXPECT_NEAR(before.levelDbuv - after.levelDbuv, 1.0, 0.01);
    EXPECT_NEAR(before.cnDb - after.cnDb, 1.0, 0.01);
}

TEST(Reception, ReachesFivePercentOfTheBandwidth)
{
    Scene scene;
    scene.signals = {terrestrial()};
    EXPECT_NE(receiveAt(scene, 473143 + 278).wanted, nullptr);
    EXPECT_NE(receiveAt(scene, 473143 - 278).wanted, nullptr);
    EXPECT_EQ(receiveAt(scene, 473143 + 279).wanted, nullptr);
    // Half of the band is seen as power: 60 - 3 dB.
    EXPECT_NEAR(receiveAt(scene, 473143 + 2785).levelDbuv, 56.99, 0.01);
    EXPECT_NEAR(receiveAt(scene, 473143 + 6000).levelDbuv, 10.234, 0.001);
}

TEST(Reception, InputsAreApart)
{
    Scene scene;
    scene.signals = {terrestrial()};
    EXPECT_EQ(receiveAt(scene, 473143, 0, 1).wanted, nullptr);
    EXPECT_NEAR(receiveAt(scene, 473143, 0, 1).levelDbuv, 10.234, 0.001);
}

TEST(Reception, NeighboursDisturbWithTheirOverlap)
{
    Scene scene;
    scene.signals = {terrestrial(60.0, 60.0), terrestrial(60.0, 60.0)};
    scene.signals[1].ulFrequencyKhz += 5570 / 2; // half of it lies within
    const Reception reception = receiveAt(scene, 473143);
    EXPECT_EQ(reception.wanted, &scene.signals[0]);
    EXPECT_NEAR(reception.cnDb, 3.01, 0.01);
    scene.signals[1].ulFrequencyKhz = 473143 + 6000;
    EXPECT_NEAR(receiveAt(scene, 473143).cnDb, 49.32, 0.1); // the receiver's noise alone
}

TEST(Reception, SatelliteNeedsItsSupply)
{
    Scene scene;
    scene.signals = {satellite(1049480, SupplyNeed::volt15)};
    EXPECT_NEAR(receiveAt(scene, 1049480, 2).cnDb, 17.0, 0.01);
    EXPECT_NEAR(receiveAt(scene, 1049480, 4).cnDb, 17.0, 0.01);
    // The other polarisation: 25 dB weaker under the same noise.
    EXPECT_NEAR(receiveAt(scene, 1049480, 1).cnDb, -8.0, 0.01);
    // No voltage: nothing but the receiver's noise.
    EXPECT_EQ(receiveAt(scene, 1049480, 0).wanted, nullptr);
    EXPECT_NEAR(receiveAt(scene, 1049480, 0).levelDbuv, 10.234, 0.001);
    scene.inputs[0].lnb.shortCircuit = true;
    EXPECT_EQ(receiveAt(scene, 1049480, 2).wanted, nullptr);
}

TEST(Reception, AnySupplyServesWhoNeedsAny)
{
    Scene scene;
    scene.signals = {satellite(1049480, SupplyNeed::any)};
    for (const uint8_t code : std::initializer_list<uint8_t>{1, 2, 3, 4})
        EXPECT_NEAR(receiveAt(scene, 1049480, code).cnDb, 17.0, 0.01) << int{code};
    EXPECT_EQ(receiveAt(scene, 1049480, 0).wanted, nullptr);
}

TEST(Reception, TheToneChoosesTheBand)
{
    Scene scene;
    scene.signals = {satellite(1049480, SupplyNeed::volt15)};
    scene.signals[0].tone = ToneNeed::on;
    EXPECT_EQ(receiveAt(scene, 1049480, 2).wanted, nullptr);
    EXPECT_NE(receiveAt(scene, 1049480, 4).wanted, nullptr);
    scene.signals[0].tone = ToneNeed::off;
    EXPECT_NE(receiveAt(scene, 1049480, 2).wanted, nullptr);
    EXPECT_EQ(receiveAt(scene, 1049480, 4).wanted, nullptr);
}

TEST(Reception, TheSupplyChoosesBetweenTwoPolarisations)
{
    Scene scene;
    scene.signals = {satellite(1049480, SupplyNeed::volt11), satellite(1049480, SupplyNeed::volt15)};
    EXPECT_EQ(receiveAt(scene, 1049480, 1).wanted, &scene.signals[0]);
    EXPECT_EQ(receiveAt(scene, 1049480, 2).wanted, &scene.signals[1]);
    // Source noise 17 dB down and the other polarisation 25 dB down: 16.36 dB.
    EXPECT_NEAR(receiveAt(scene, 1049480, 2).cnDb, 16.36, 0.01);
}

RC_GTEST_PROP(Reception, MoreCableNeverGivesMore, ())
{
    Scene scene;
    scene.signals = {terrestrial(*rc::gen::inRange(-20, 130), *rc::gen::inRange(-20, 60))};
    scene.inputs[0].cable = cableThrough(470, 13.7, 2150, 31.9);
    scene.inputs[0].cable.lengthM = *rc::gen::inRange(0, 500);
    scene.inputs[0].cable.extraDb = *rc::gen::inRange(0, 100);
    const Reception before = receiveAt(scene, 473143);
    scene.inputs[0].cable.lengthM += *rc::gen::inRange(0, 100);
    scene.inputs[0].cable.extraDb += *rc::gen::inRange(0, 100);
    const Reception after = receiveAt(scene, 473143);
    RC_ASSERT(after.levelDbuv <= before.levelDbuv);
    RC_ASSERT(after.cnDb <= before.cnDb);
}

RC_GTEST_PROP(Reception, MoreNoiseNeverGivesMoreCn, ())
{
    Scene scene;
    scene.signals = {terrestrial(*rc::gen::inRange(-20, 130), *rc::gen::inRange(-20, 60))};
    scene.noiseFigureDb = *rc::gen::inRange(0, 30);
    const double before = receiveAt(scene, 473143).cnDb;
    scene.noiseFigureDb += *rc::gen::inRange(0, 30);
    RC_ASSERT(receiveAt(scene, 473143).cnDb <= before);
}

TEST(Random, IsAFunctionOfSeedTimePurposeAndPlace)
{
    const uint64_t first = Random(1, 100, Purpose::level, 473143).bits();
    EXPECT_EQ(Random(1, 100, Purpose::level, 473143).bits(), first);
    EXPECT_NE(Random(2, 100, Purpose::level, 473143).bits(), first);
    EXPECT_NE(Random(1, 200, Purpose::level, 473143).bits(), first);
    EXPECT_NE(Random(1, 100, Purpose::cn, 473143).bits(), first);
    EXPECT_NE(Random(1, 100, Purpose::level, 479143).bits(), first);
}

TEST(Random, NormalHasMeanZeroAndVarianceOne)
{
    double sum = 0.0;
    double squares = 0.0;
    constexpr int kDraws = 20000;
    for (int i = 0; i < kDraws; ++i) {
        const double value = Random(7, static_cast<uint64_t>(i) * 100, Purpose::level, 0).normal();
        sum += value;
        squares += value * value;
    }
    EXPECT_NEAR(sum / kDraws, 0.0, 0.03);
    EXPECT_NEAR(squares / kDraws, 1.0, 0.04);
}

TEST(DrawErrors, HasTheMeanAndSpreadOfTheBinomial)
{
    // One line for each branch: few expected errors, many.
    for (const auto& [n, p] : {std::pair{1000u, 0.004}, std::pair{100000u, 0.01}}) {
        double sum = 0.0;
        double squares = 0.0;
        constexpr int kDraws = 5000;
        for (int i = 0; i < kDraws; ++i) {
            Random random(3, static_cast<uint64_t>(i), Purpose::bitErrors, 0);
            const double count = drawErrors(random, n, p);
            sum += count;
            squares += count * count;
        }
        const double mean = sum / kDraws;
        const double variance = squares / kDraws - mean * mean;
        EXPECT_NEAR(mean / (n * p), 1.0, 0.03) << n;
        EXPECT_NEAR(variance / (n * p), 1.0, 0.1) << n;
    }
}

RC_GTEST_PROP(DrawErrors, NeverExceedsTheBits, (uint32_t n, uint64_t seed))
{
    const double p = *rc::gen::inRange(0, 501) / 1000.0;
    Random random(seed, 0, Purpose::bitErrors, 0);
    RC_ASSERT(drawErrors(random, n, p) <= n);
}

TEST(DrawErrors, Edges)
{
    Random random(1, 1, Purpose::bitErrors, 1);
    EXPECT_EQ(drawErrors(random, 0, 0.5), 0u);
    EXPECT_EQ(drawErrors(random, UINT32_MAX, 0.0), 0u);
    EXPECT_LE(drawErrors(random, 1, 0.5), 1u);
}

} // namespace
} // namespace vmeter

// The angle sensor, the optical power and the DC voltage of the virtual meter.
#include "meter_bench.h"
#include "signal/angle.h"

#include <rapidcheck/gtest.h>

#include <cmath>

namespace vmeter {
namespace {

uint8_t dev(Bench& bench, uint16_t usCmd, uint8_t ucArg = 0)
{
    return bench.call(kDeviceService, usCmd, {ucArg, 0, 0, 0})[0];
}

wire::AngleDetail detail(Bench& bench)
{
    const auto response =
        bench.ask<wire::AngleCalInfoDetailResponse>(kDeviceService, 0x21, wire::ByteRequest{});
    EXPECT_EQ(response.ucRet, 0);
    return response.detail;
}

wire::AngleCalStatResponse calibration(Bench& bench)
{
    return bench.ask<wire::AngleCalStatResponse>(kDeviceService, 0x20, wire::ByteRequest{});
}

Bench antenna(const std::string& keys)
{
    Bench bench("[antenna]\n" + keys);
    EXPECT_EQ(dev(bench, 0x07, 1), 0);
    return bench;
}

TEST(Angle, AQuarterTurnChangesTheAxes)
{
    constexpr double kQuarter = 1.5707963267948966;
    const auto expectVector = [](const Vector& seen, double x, double y, double z) {
        EXPECT_NEAR(seen.x, x, 1e-12);
        EXPECT_NEAR(seen.y, y, 1e-12);
        EXPECT_NEAR(seen.z, z, 1e-12);
    };
    expectVector(turnX({1, 2, 3}, kQuarter), 1, 3, -2);
    expectVector(turnY({1, 2, 3}, kQuarter), -3, 2, 1);
    expectVector(turnZ({1, 2, 3}, kQuarter), 2, -1, 3);
}

TEST(Angle, LevelAndNorthSeesGravityAndTheField)
{
    Bench bench = antenna("field_ut = 50\ninclination_deg = 30");
    const wire::AngleDetail seen = detail(bench);
    EXPECT_EQ(seen.flRoll, 0.0f);
    EXPECT_EQ(seen.flPitch, 0.0f);
    EXPECT_EQ(seen.flAx, 0.0f);
    EXPECT_EQ(seen.flAy, 0.0f);
    EXPECT_EQ(seen.flAz, 1.0f);
    EXPECT_NEAR(seen.flMx, 43.3013f, 1e-4); // 50 cos 30
    EXPECT_NEAR(seen.flMy, 0.0f, 1e-6);
    EXPECT_NEAR(seen.flMz, 25.0f, 1e-4);
    EXPECT_NEAR(seen.flMxRot, 43.3013f, 1e-4);
    EXPECT_NEAR(seen.flMzRot, 25.0f, 1e-4);
    EXPECT_EQ(seen.flAzRot, 1.0f);
}

TEST(Angle, RollPitchAndHeadingTurnTheVectors)
{
    Bench rolled = antenna("roll_deg = 30");
    wire::AngleDetail seen = detail(rolled);
    EXPECT_NEAR(seen.flRoll, 30.0f, 1e-4);
    EXPECT_NEAR(seen.flPitch, 0.0f, 1e-4);
    EXPECT_NEAR(seen.flAy, 0.5f, 1e-6); // the right side is down
    EXPECT_NEAR(seen.flAz, 0.866025f, 1e-6);

    Bench pitched = antenna("pitch_deg = 30");
    seen = detail(pitched);
    EXPECT_NEAR(seen.flPitch, 30.0f, 1e-4);
    EXPECT_NEAR(seen.flAx, -0.5f, 1e-6); // the front is up
    EXPECT_NEAR(seen.flAz, 0.866025f, 1e-6);

    Bench east = antenna("heading_deg = 90\nfield_ut = 50\ninclination_deg = 30");
    seen = detail(east);
    EXPECT_NEAR(seen.flMx, 0.0f, 1e-4);
    EXPECT_NEAR(seen.flMy, -43.3013f, 1e-4); // north is to the left
    EXPECT_NEAR(seen.flMz, 25.0f, 1e-4);

    // 40 and 25 degrees: Ax = -sin 25, Ay = cos 25 sin 40, Az = cos 25 cos 40
    Bench both = antenna("roll_deg = 40\npitch_deg = 25\nheading_deg = 224\nfield_ut = 50\n"
                         "inclination_deg = 30");
    seen = detail(both);
    EXPECT_NEAR(seen.flRoll, 40.0f, 1e-4);
    EXPECT_NEAR(seen.flPitch, 25.0f, 1e-4);
    EXPECT_NEAR(seen.flAx, -0.422618f, 1e-6);
    EXPECT_NEAR(seen.flAy, 0.582563f, 1e-6);
    EXPECT_NEAR(seen.flAz, 0.694272f, 1e-6);
    EXPECT_NEAR(seen.flAxRot, 0.0f, 1e-6);
    EXPECT_NEAR(seen.flAyRot, 0.0f, 1e-6);
    EXPECT_NEAR(seen.flAzRot, 1.0f, 1e-6);
    EXPECT_NEAR(seen.flMxRot, -31.1484f, 1e-3); // 43.3013 cos 224
    EXPECT_NEAR(seen.flMyRot, 30.0796f, 1e-3);  // -43.3013 sin 224
    EXPECT_NEAR(seen.flMzRot, 25.0f, 1e-3);
}

TEST(Angle, TheAntennaSwings)
{
    Bench bench = antenna("roll_deg = 5\nroll_swing_deg = 2\nroll_period_ms = 800\n"
                          "pitch_deg = 40\npitch_swing_deg = 3\npitch_period_ms = 1200");
    // The switch took 100 ms; these are 200, 300 ... 800 ms.
    const double rolls[] = {7.0, 6.41421, 5.0, 3.58579, 3.0, 3.58579, 5.0};
    const double pitches[] = {42.59808, 43.0, 42.59808, 41.5, 40.0, 38.5, 37.40192};
    for (int i = 0; i < 7; ++i) {
        const wire::AngleDetail seen = detail(bench);
        EXPECT_NEAR(seen.flRoll, rolls[i], 1e-4) << i;
        EXPECT_NEAR(seen.flPitch, pitches[i], 1e-4) << i;
    }
}

TEST(Angle, ReadingsAreNoisy)
{
    Bench bench = antenna("acceleration_sigma_g = 0.01\nfield_sigma_ut = 2\nfield_ut = 0");
    double acceleration = 0.0;
    double field = 0.0;
    double product = 0.0;
    for (int i = 0; i < 1000; ++i) {
        const wire::AngleDetail seen = detail(bench);
        acceleration += std::pow(seen.flAx, 2) + std::pow(seen.flAy, 2) + std::pow(seen.flAz - 1.0, 2);
        field += std::pow(seen.flMx, 2) + std::pow(seen.flMy, 2) + std::pow(seen.flMz, 2);
        product += seen.flAx * seen.flMx;
    }
    EXPECT_NEAR(std::sqrt(acceleration / 3000.0), 0.01, 0.001);
    EXPECT_NEAR(std::sqrt(field / 3000.0), 2.0, 0.2);
    EXPECT_NEAR(product / 1000.0, 0.0, 0.004);
}

TEST(AngleCalibration, GoesThroughItsTurns)
{
    Bench bench("[antenna]\nhard_iron_ut = [12, -7, 4.5]");
    EXPECT_EQ(calibration(bench).lStatus, 0);
    EXPECT_EQ(dev(bench, 0x1F), 0);
    bench.scene_.clockMs = 1000;
    const int statuses[] = {1, 2, 2, 3, 3, 4, 4};
    for (int i = 0; i < 7; ++i) {
        const wire::AngleCalStatResponse response = calibration(bench);
        EXPECT_EQ(response.ucRet, 0);
        EXPECT_EQ(response.lStatus, statuses[i]) << i;
        const float* const points[] = {response.centerPoint1, response.centerPoint2, response.centerPoint3};
        for (int turn = 0; turn < 3; ++turn) {
            const bool known = turn + 1 < statuses[i];
            EXPECT_EQ(points[turn][0], known ? 12.0f : 0.0f);
            EXPECT_EQ(points[turn][1], known ? -7.0f : 0.0f);
            EXPECT_EQ(points[turn][2], known ? 4.5f : 0.0f);
        }
    }
    EXPECT_EQ(dev(bench, 0x1F), 0); // anew
    EXPECT_EQ(calibration(bench).lStatus, 1);
}

TEST(AngleCalibration, TakesTheIronOutOfTheTurnedField)
{
    Bench bench = antenna("hard_iron_ut = [12, -7, 4.5]\nfield_ut = 50\ninclination_deg = 30");
    EXPECT_NEAR(detail(bench).flMx, 55.3013f, 1e-4);
    EXPECT_NEAR(detail(bench).flMxRot, 55.3013f, 1e-4);
    EXPECT_NEAR(detail(bench).flMyRot, -7.0f, 1e-4);
    dev(bench, 0x1F);
    bench.state_.ulSimMs += 5000;
    EXPECT_NEAR(detail(bench).flMxRot, 55.3013f, 1e-4); // in the last turn
    bench.state_.ulSimMs += 1000;
    EXPECT_NEAR(detail(bench).flMx, 55.3013f, 1e-4); // as it is
    EXPECT_NEAR(detail(bench).flMxRot, 43.3013f, 1e-4);
    EXPECT_NEAR(detail(bench).flMyRot, 0.0f, 1e-4);
    EXPECT_NEAR(detail(bench).flMzRot, 25.0f, 1e-4);
}

TEST(AngleCalibration, ItsPointsScatter)
{
    Bench bench("[antenna]\nhard_iron_ut = [12, -7, 4.5]\nfield_sigma_ut = 10");
    double sum = 0.0;
    for (int i = 0; i < 300; ++i) {
        dev(bench, 0x1F);
        bench.state_.ulSimMs += 6000;
        const wire::AngleCalStatResponse response = calibration(bench);
        EXPECT_EQ(toBody(calibration(bench)), toBody(response)); // stay as they were found
        EXPECT_NE(response.centerPoint1[0], response.centerPoint2[0]);
        EXPECT_NE(response.centerPoint2[0], response.centerPoint3[0]);
        sum += std::pow(response.centerPoint3[0] - 12.0, 2) + std::pow(response.centerPoint1[1] + 7.0, 2) +
               std::pow(response.centerPoint2[2] - 4.5, 2);
    }
    EXPECT_NEAR(std::sqrt(sum / 900.0), 0.7071, 0.07); // 10 / sqrt(200)
}

TEST(Angle, IsRefusedWhileTheSensorIsOff)
{
    Bench bench;
    Body refused(60);
    refused[0] = 5;
    EXPECT_EQ(bench.call(kDeviceService, 0x21, Body(4)), refused);
    EXPECT_EQ(dev(bench, 0x07, 2), 2);
    EXPECT_EQ(dev(bench, 0x07, 255), 2);
    EXPECT_EQ(bench.call(kDeviceService, 0x21, Body(4)), refused);
    EXPECT_EQ(dev(bench, 0x07, 1), 0);
    EXPECT_EQ(dev(bench, 0x21), 0);
    EXPECT_EQ(dev(bench, 0x07, 0), 0);
    EXPECT_EQ(dev(bench, 0x07, 0), 0); // once more is no error
    EXPECT_EQ(bench.call(kDeviceService, 0x21, Body(4)), refused);
    EXPECT_EQ(dev(bench, 0x1F), 0);
    EXPECT_EQ(dev(bench, 0x21), 0); // on while it is calibrated
    bench.state_.ulSimMs += 6000;
    EXPECT_EQ(bench.call(kDeviceService, 0x21, Body(4)), refused);
}

// Turning back what the sensor sees gives gravity, whatever the attitude, and the angles that made it.
RC_GTEST_PROP(Angle, LevelAxesSeeGravityAndTheField, ())
{
    const int roll = *rc::gen::inRange(-179, 180);
    const int pitch = *rc::gen::inRange(-89, 90);
    const int heading = *rc::gen::inRange(0, 361);
    Bench bench = antenna("roll_deg = " + std::to_string(roll) + "\npitch_deg = " + std::to_string(pitch) +
                          "\nheading_deg = " + std::to_string(heading));
    const wire::AngleDetail seen = detail(bench);
    RC_ASSERT(std::abs(seen.flRoll - static_cast<float>(roll)) < 1e-3f);
    RC_ASSERT(std::abs(seen.flPitch - static_cast<float>(pitch)) < 1e-3f);
    RC_ASSERT(std::abs(seen.flAxRot) < 1e-5f);
    RC_ASSERT(std::abs(seen.flAyRot) < 1e-5f);
    RC_ASSERT(std::abs(seen.flAzRot - 1.0f) < 1e-5f);
    const double horizontal = std::hypot(seen.flMxRot, seen.flMyRot);
    RC_ASSERT(std::abs(horizontal - 30.17872) < 1e-3); // 46 cos 49
    RC_ASSERT(std::abs(seen.flMzRot - 34.71664) < 1e-3);
    const double turned =
        std::remainder(std::atan2(-seen.flMyRot, seen.flMxRot) * 180.0 / 3.14159265358979 - heading, 360.0);
    RC_ASSERT(std::abs(turned) < 1e-2);
}

uint8_t startLight(Bench& bench, uint32_t ulWaveLength, uint8_t ucStartStop = 1)
{
    wire::OptMeasRequest request{};
    request.ucStartStop = ucStartStop;
    request.ulWaveLength = ulWaveLength;
    return bench.call(kMeasurementService, 0x10C, toBody(request))[0];
}

wire::OptMeasResultResponse light(Bench& bench)
{
    return bench.ask<wire::OptMeasResultResponse>(kMeasurementService, 0x10D, wire::ByteRequest{});
}

TEST(OpticalPower, IsTheLightAroundTheWavelength)
{
    Bench bench("level_sigma_db = 0\n[[light]]\nwavelength_nm = 1310\npower_dbm = -3\n"
                "[[light]]\nwavelength_nm = 1490\npower_dbm = -20\n"
                "[[light]]\nwavelength_nm = 1510\npower_dbm = -20\n"
                "[[light]]\nwavelength_nm = 1625\npower_dbm = -70");
    const std::pair<uint32_t, int32_t> cases[] = {{1310, -300},  {1290, -300},  {1330, -300},  {1289, -7000},
                                                  {1331, -7000}, {1500, -1699}, {1485, -2000}, {1515, -2000},
                                                  {1625, -6699}, {800, -7000},  {1700, -7000}};
    for (const auto& [ulWaveLength, lExpected] : cases) {
        EXPECT_EQ(startLight(bench, ulWaveLength), 0);
        EXPECT_EQ(light(bench).ucRet, 0);
        EXPECT_EQ(light(bench).lOptPow, lExpected) << ulWaveLength;
    }
}

TEST(OpticalPower, Fluctuates)
{
    Bench bench("level_sigma_db = 0.5\n[[light]]\nwavelength_nm = 1310\npower_dbm = -3");
    startLight(bench, 1310);
    double sum = 0.0;
    for (int i = 0; i < 1000; ++i)
        sum += std::pow(light(bench).lOptPow / 100.0 + 3.0, 2);
    EXPECT_NEAR(std::sqrt(sum / 1000.0), 0.5, 0.06);
}

TEST(OpticalPower, RefusesOtherWavelengthsAndOrders)
{
    Bench bench;
    Body refused(8);
    refused[0] = 5;
    EXPECT_EQ(toBody(light(bench)), refused);
    for (const uint32_t ulWaveLength : {0u, 1u, 799u, 1701u, UINT32_MAX})
        EXPECT_EQ(startLight(bench, ulWaveLength), 2);
    EXPECT_EQ(startLight(bench, 1310, 2), 2);
    EXPECT_EQ(toBody(light(bench)), refused);
    EXPECT_EQ(startLight(bench, 1310), 0);
    EXPECT_EQ(startLight(bench, 1701), 2); // the running one goes on
    EXPECT_EQ(light(bench).ucRet, 0);
    EXPECT_EQ(startLight(bench, 0, 0), 0);
    EXPECT_EQ(startLight(bench, 0, 0), 0);
    EXPECT_EQ(toBody(light(bench)), refused);
}

uint8_t startDc(Bench& bench, uint8_t ucStartStop = 1)
{
    return bench.call(kMeasurementService, 0x10E, {0, 0, 0, 0, ucStartStop, 0, 0, 0})[0];
}

wire::DcMeasResultResponse dc(Bench& bench)
{
    return bench.ask<wire::DcMeasResultResponse>(kMeasurementService, 0x10F, wire::ByteRequest{});
}

TEST(DcVoltage, IsTheHigherOfTheCablesAndTheMetersOwn)
{
    Bench bench("[[input]]\nid = 0\ndc_v = 12.3456\n[[input]]\nid = 1\ndc_v = 28");
    EXPECT_EQ(startDc(bench), 0);
    EXPECT_EQ(dc(bench).ulDcV, 12346u);
    bench.supply(1);
    EXPECT_EQ(dc(bench).ulDcV, 12346u);
    bench.supply(2);
    EXPECT_EQ(dc(bench).ulDcV, 15000u);
    bench.input(1);
    EXPECT_EQ(dc(bench).ulDcV, 28000u);
    bench.scene_.inputs[1].lnb.shortCircuit = true;
    EXPECT_EQ(dc(bench).ulDcV, 0u);
    EXPECT_EQ(dc(bench).ucRet, 0);
}

TEST(DcVoltage, RefusesOtherOrders)
{
    Bench bench;
    Body refused(8);
    refused[0] = 5;
    EXPECT_EQ(toBody(dc(bench)), refused);
    EXPECT_EQ(startDc(bench, 2), 2);
    EXPECT_EQ(toBody(dc(bench)), refused);
    EXPECT_EQ(startDc(bench), 0);
    EXPECT_EQ(startDc(bench), 0);
    EXPECT_EQ(dc(bench).ucRet, 0);
    EXPECT_EQ(startDc(bench, 2), 2);
    EXPECT_EQ(dc(bench).ucRet, 0);
    EXPECT_EQ(startDc(bench, 0), 0);
    EXPECT_EQ(toBody(dc(bench)), refused);
}

TEST(DcVoltage, GoesOnBesideTheTuner)
{
    Bench bench;
    startDc(bench);
    startLight(bench, 1310);
    EXPECT_EQ(bench.start(terrestrial()), 0);
    EXPECT_EQ(dc(bench).ucRet, 0);
    EXPECT_EQ(light(bench).ucRet, 0);
    EXPECT_EQ(bench.stop(), 0);
    EXPECT_EQ(dc(bench).ucRet, 0);
    EXPECT_EQ(light(bench).ucRet, 0);
}

TEST(DefaultScene, HasLightVoltageAndAnAntenna)
{
    Bench bench(defaultScene());
    for (const auto& [ulWaveLength, lExpected] :
         {std::pair(1310u, 180), std::pair(1490u, -1840), std::pair(1550u, -970)}) {
        startLight(bench, ulWaveLength);
        EXPECT_NEAR(light(bench).lOptPow, lExpected, 60);
    }
    startDc(bench);
    EXPECT_EQ(dc(bench).ulDcV, 0u);
    bench.input(1);
    EXPECT_EQ(dc(bench).ulDcV, 28400u);
    dev(bench, 0x07, 1);
    EXPECT_NEAR(detail(bench).flPitch, 38.0, 2.0);
    EXPECT_NEAR(detail(bench).flRoll, 1.5, 2.0);
}

} // namespace
} // namespace vmeter

#include "signal/angle.h"
#include "signal/random.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vmeter {
namespace {

constexpr double kDegree = std::numbers::pi / 180.0;

// Readings of the magnetometer in one turn of a calibration: one every 10 ms.
constexpr double kTurnReadings = kTurnMs / 10.0;

Vector operator+(const Vector& a, const Vector& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

Vector operator*(double factor, const Vector& v)
{
    return {factor * v.x, factor * v.y, factor * v.z};
}

Vector normalVector(Random random)
{
    const double x = random.normal();
    const double y = random.normal();
    const double z = random.normal();
    return {x, y, z};
}

double swinging(double restDeg, double swingDeg, double periodMs, uint64_t ulSimMs)
{
    const double phase = std::fmod(static_cast<double>(ulSimMs), periodMs) / periodMs;
    return (restDeg + swingDeg * std::sin(2.0 * std::numbers::pi * phase)) * kDegree;
}

Vector hardIron(const Antenna& antenna)
{
    return {antenna.hardIronUt[0], antenna.hardIronUt[1], antenna.hardIronUt[2]};
}

Vector meanCenter(const Meter& meter)
{
    Vector sum{};
    for (int32_t turn = 0; turn < kTurns; ++turn)
        sum = sum + centerPoint(meter, turn);
    return (1.0 / kTurns) * sum;
}

} // namespace

Vector turnX(const Vector& v, double radians)
{
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    return {v.x, c * v.y + s * v.z, -s * v.y + c * v.z};
}

Vector turnY(const Vector& v, double radians)
{
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    return {c * v.x - s * v.z, v.y, s * v.x + c * v.z};
}

Vector turnZ(const Vector& v, double radians)
{
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    return {c * v.x + s * v.y, -s * v.x + c * v.y, v.z};
}

AngleReading readAngle(const Meter& meter)
{
    const Antenna& antenna = meter.scene.antenna;
    const uint64_t ulSimMs = meter.state.ulSimMs;
    const double roll = swinging(antenna.rollDeg, antenna.rollSwingDeg, antenna.rollPeriodMs, ulSimMs);
    const double pitch = swinging(antenna.pitchDeg, antenna.pitchSwingDeg, antenna.pitchPeriodMs, ulSimMs);
    const auto toSensor = [&](const Vector& earth) {
        return turnX(turnY(turnZ(earth, antenna.headingDeg * kDegree), pitch), roll);
    };
    const auto toLevel = [](const Vector& sensor, const AngleReading& angle) {
        return turnY(turnX(sensor, -angle.rollDeg * kDegree), -angle.pitchDeg * kDegree);
    };

    const double inclination = antenna.inclinationDeg * kDegree;
    const Vector earthField = antenna.fieldUt * Vector{std::cos(inclination), 0.0, std::sin(inclination)};
    const auto noise = [&](Purpose purpose, double sigma) {
        return sigma * normalVector(Random(meter.scene.seed, ulSimMs, purpose, 0));
    };

    AngleReading reading{};
    reading.acceleration =
        toSensor({0.0, 0.0, 1.0}) + noise(Purpose::acceleration, antenna.accelerationSigmaG);
    reading.field =
        toSensor(earthField) + hardIron(antenna) + noise(Purpose::magneticField, antenna.fieldSigmaUt);
    const Vector& a = reading.acceleration;
    reading.rollDeg = std::atan2(a.y, a.z) / kDegree;
    reading.pitchDeg = std::atan2(-a.x, std::hypot(a.y, a.z)) / kDegree;
    reading.levelAcceleration = toLevel(a, reading);
    const bool calibrated = calibrationStatus(meter.state) > kTurns;
    const Vector center = calibrated ? meanCenter(meter) : Vector{};
    reading.levelField = toLevel(reading.field + -1.0 * center, reading);
    return reading;
}

int32_t calibrationStatus(const State& state)
{
    if (!state.angle.ucCalibration)
        return 0;
    const uint64_t turn = (state.ulSimMs - state.angle.ulCalibrationMs) / kTurnMs;
    return static_cast<int32_t>(std::min<uint64_t>(turn, kTurns)) + 1;
}

Vector centerPoint(const Meter& meter, int32_t turn)
{
    const Antenna& antenna = meter.scene.antenna;
    const Random random(meter.scene.seed, meter.state.angle.ulCalibrationMs, Purpose::centerPoint,
                        static_cast<uint64_t>(turn));
    return hardIron(antenna) + antenna.fieldSigmaUt / std::sqrt(kTurnReadings) * normalVector(random);
}

} // namespace vmeter

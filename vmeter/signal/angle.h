// The angle sensor: an accelerometer and a magnetometer on a moving antenna. Axes as in aeronautics: x
// forward, y to the right, z down; roll about x, pitch about y, heading about z.
#pragma once

#include "model/meter.h"

#include <cstdint>

namespace vmeter {

struct Vector {
    double x;
    double y;
    double z;
};

// The same vector seen from axes turned by an angle about x, y or z.
Vector turnX(const Vector& v, double radians);
Vector turnY(const Vector& v, double radians);
Vector turnZ(const Vector& v, double radians);

struct AngleReading {
    double rollDeg; // as the accelerometer tells them
    double pitchDeg;
    Vector acceleration;      // g; (0, 0, 1) where the sensor lies level
    Vector field;             // uT
    Vector levelAcceleration; // both turned back by roll and pitch; the field less the centre that a
    Vector levelField;        // finished calibration found
};

// At the present moment.
AngleReading readAngle(const Meter& meter);

// A calibration turns the antenna three times; each turn finds the centre of the field's sphere.
inline constexpr uint32_t kTurnMs = 2000;
inline constexpr int32_t kTurns = 3;

// 0: never calibrated, 1 to 3: in that turn, 4: finished.
int32_t calibrationStatus(const State& state);

// The centre that a finished turn, 0 to 2, has found, in uT.
Vector centerPoint(const Meter& meter, int32_t turn);

} // namespace vmeter

// The constellation points of a measurement that runs.
#pragma once

#include "common/output.h"
#include "measure/reading.h"
#include "measure/single_measurement.h"

#include <cstdint>
#include <vector>

namespace tool {

struct Constellation {
    Reading reading; // taken with the last points
    std::vector<ConstaPoint> points;
};

// As many points, or those that there were before the lock was lost or an interruption. Throws Failure.
//   wanted  1000, 2000 or 4000
Constellation readPoints(const SingleMeasurement& measurement, uint8_t ucDispType, uint16_t wanted,
                         Progress& progress);

} // namespace tool

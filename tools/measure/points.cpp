#include "measure/points.h"

#include "common/interrupt.h"
#include "common/text.h"
#include "measure/point_collection.h"

#include <chrono>
#include <utility>

namespace tool {

Constellation readPoints(const SingleMeasurement& measurement, uint8_t ucDispType, uint16_t wanted,
                         Progress& progress)
{
    constexpr int kMaxEmptyReads = 50; // in a row, before the signal counts as lost
    constexpr std::chrono::milliseconds kPollTime{100};
    PointCollection collection(ucDispType, wanted);
    std::vector<ConstaPoint> points;
    int empty = 0;
    while (points.size() < wanted && empty < kMaxEmptyReads && interruption() == 0) {
        progress.show(format("Reading points: %zu of %u", points.size(), wanted));
        const auto came = collection.read(wanted - points.size());
        points.insert(points.end(), came.begin(), came.end());
        empty = came.empty() ? empty + 1 : 0;
        if (came.empty())
            waitFor(kPollTime);
    }
    Constellation constellation{measurement.readingOf(collection.result()), std::move(points)};
    collection.stop();
    return constellation;
}

} // namespace tool

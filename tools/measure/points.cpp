#include "measure/points.h"

#include "common/exchange.h"
#include "common/interrupt.h"
#include "common/running.h"
#include "common/text.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace tool {

namespace {

constexpr uint16_t kMaxRead = 624; // points that one message has room for
constexpr int kMaxEmptyReads = 50; // in a row, before the signal counts as lost
constexpr std::chrono::milliseconds kPollTime{100};

} // namespace

Constellation readPoints(const SingleMeasurement& measurement, uint8_t ucDispType, uint16_t wanted,
                         Progress& progress)
{
    Running collection(
        "the collection of points", [=] { return vx63_startConstaMeas(ucDispType, wanted); },
        [=] { return vx63_stopConstaMeas(ucDispType); });
    const auto record = std::make_unique<SingleMeasResult>();
    std::vector<ConstaPoint> points;
    int empty = 0;
    while (points.size() < wanted && empty < kMaxEmptyReads && interruption() == 0) {
        progress.show(format("Reading points: %zu of %u", points.size(), wanted));
        const auto count = static_cast<uint16_t>(std::min<size_t>(kMaxRead, wanted - points.size()));
        require("cannot read the constellation",
                [&] { return vx63_getSingleMeasResult(count, record.get()); });
        const size_t came = std::min(record->CONS_NUM, count);
        points.insert(points.end(), record->points, record->points + came);
        empty = came == 0 ? empty + 1 : 0;
        if (came == 0)
            waitFor(kPollTime);
    }
    Constellation constellation{measurement.readingOf(*record), std::move(points)};
    collection.stop();
    return constellation;
}

} // namespace tool

// Constellation points of a single measurement.
#include "signal/constellation.h"
#include "meas/wire.h"
#include "services/measurement.h"
#include "services/readings.h"
#include "services/results.h"

#include <algorithm>
#include <cstddef>

namespace vmeter {
namespace {

namespace wire = vx63::wire;

// Fills in the next points of the collection; one that has been read to its end makes room for a new one.
void collect(Meter& meter, const Observation& now, uint16_t usReadCount, wire::ConstaResponse& response)
{
    ConstellationState& collection = meter.state.constellation;
    if (collection.usRead == collection.usCollected) {
        collection.ulBeginMs = meter.state.ulSimMs;
        collection.usRead = 0;
    }
    const auto left = static_cast<uint32_t>(collection.usCollected - collection.usRead);
    const uint32_t count = std::min({uint32_t{usReadCount}, left, wire::kConstaPoints});
    const std::span ideal = idealPoints(symbolModulation(*now.reception.wanted));
    for (uint32_t i = 0; i < count; ++i) {
        Random random(meter.scene.seed, collection.ulBeginMs, Purpose::constellation, collection.usRead + i);
        const ReceivedPoint point = drawPoint(random, ideal, now.cnDb);
        response.points[i][0] = point.i;
        response.points[i][1] = point.q;
    }
    response.CONS_NUM = static_cast<uint16_t>(count);
    collection.usRead = static_cast<uint16_t>(collection.usRead + count);
}

// Up to the last point that it has.
Body cutBody(const wire::ConstaResponse& response)
{
    Body body = toBody(response);
    body.resize(offsetof(wire::ConstaResponse, points) + response.CONS_NUM * sizeof response.points[0]);
    return body;
}

Body refusal(uint8_t ucRet)
{
    wire::ConstaResponse response{};
    response.ucRet = ucRet;
    return cutBody(response);
}

} // namespace

Body constellationStart(Meter& meter, std::span<const uint8_t> request)
{
    const auto start = bodyAs<wire::StartConstaRequest>(request);
    if (request.size() < sizeof start || start.ucStartStop > wire::kStart)
        return resultBody(kRetParameter);
    if (start.ucStartStop == wire::kStop) {
        meter.state.constellation = {};
        return resultBody(kRetOk);
    }
    if (start.collectNum != 1000 && start.collectNum != 2000 && start.collectNum != 4000)
        return resultBody(kRetParameter);
    if (meter.state.run != Run::single)
        return resultBody(kRetNotRunning);
    meter.state.constellation = {
        .ulBeginMs = meter.state.ulSimMs, .usCollected = start.collectNum, .usRead = 0};
    return resultBody(kRetOk);
}

Body constellationResult(Meter& meter, std::span<const uint8_t> request)
{
    const auto read = bodyAs<wire::ConstaRequest>(request);
    if (request.size() < sizeof read || read.usReadCount == 0)
        return refusal(kRetParameter);
    if (meter.state.constellation.usCollected == 0)
        return refusal(kRetNotRunning);
    if (supplyState(meter.scene, meter.state.ucInput, meter.state.ucSupplyCode).fault)
        return refusal(kRetPowerSupply);
    wire::ConstaResponse response{};
    const Observation now = fillPresent(meter, response);
    if (response.lock)
        collect(meter, now, read.usReadCount, response);
    return cutBody(response);
}

} // namespace vmeter

// Single measurement, and the priority multi-channel measurement, which asks for the same.
#include "meas/wire.h"
#include "services/measurement.h"
#include "services/readings.h"
#include "services/results.h"
#include "signal/tuner.h"

namespace vmeter {

namespace wire = vx63::wire;

Body singleStart(Meter& meter, std::span<const uint8_t> request)
{
    const auto start = bodyAs<wire::StartRequest>(request);
    if (request.size() < sizeof start || start.ucStartStop > wire::kStart)
        return resultBody(kRetParameter);
    if (start.ucStartStop == wire::kStop) {
        if (meter.state.run == Run::single)
            stopRun(meter);
        return resultBody(kRetOk);
    }
    if (!isUsable(start))
        return resultBody(kRetParameter);
    const uint8_t ucRet = tunerRet(meter.state, {Run::single});
    if (ucRet == kRetOk)
        startRun(meter, Run::single, start);
    return resultBody(ucRet);
}

Body singleResult(Meter& meter, std::span<const uint8_t> request)
{
    using Response = wire::SingleResultResponse;
    if (request.size() < sizeof(wire::ByteRequest))
        return refusalBody<Response>(kRetParameter);
    if (meter.state.run != Run::single)
        return refusalBody<Response>(kRetNotRunning);
    if (supplyState(meter.scene, meter.state.ucInput, meter.state.ucSupplyCode).fault)
        return refusalBody<Response>(kRetPowerSupply);
    Response response{};
    fillPresent(meter, response);
    return toBody(response);
}

} // namespace vmeter

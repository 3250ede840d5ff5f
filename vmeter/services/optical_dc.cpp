// Optical power and DC voltage: converters of their own, beside whatever the tuner does.
#include "meas/wire.h"
#include "services/measurement.h"
#include "services/results.h"
#include "signal/channel_list.h"
#include "signal/optical.h"
#include "signal/random.h"

#include <cmath>

namespace vmeter {

namespace wire = vx63::wire;

Body opticalStart(Meter& meter, std::span<const uint8_t> request)
{
    const auto start = bodyAs<wire::OptMeasRequest>(request);
    if (request.size() < sizeof start || start.ucStartStop > wire::kStart)
        return resultBody(kRetParameter);
    if (start.ucStartStop == wire::kStop) {
        meter.state.ulOpticalNm = 0;
        return resultBody(kRetOk);
    }
    if (start.ulWaveLength < kOpticalMinNm || start.ulWaveLength > kOpticalMaxNm)
        return resultBody(kRetParameter);
    meter.state.ulOpticalNm = start.ulWaveLength;
    return resultBody(kRetOk);
}

Body opticalResult(Meter& meter, std::span<const uint8_t> request)
{
    using Response = wire::OptMeasResultResponse;
    if (request.size() < sizeof(wire::ByteRequest))
        return refusalBody<Response>(kRetParameter);
    const uint32_t ulNm = meter.state.ulOpticalNm;
    if (ulNm == 0)
        return refusalBody<Response>(kRetNotRunning);
    Random random(meter.scene.seed, meter.state.ulSimMs, Purpose::opticalPower, ulNm);
    const double dbm = opticalDbm(meter.scene, ulNm) + meter.scene.levelSigmaDb * random.normal();
    Response response{};
    response.lOptPow = static_cast<int32_t>(std::lround(dbm * 100.0));
    return toBody(response);
}

Body dcStart(Meter& meter, std::span<const uint8_t> request)
{
    const auto start = bodyAs<wire::DcMeasRequest>(request);
    if (request.size() < sizeof start || start.ucStartStop > wire::kStart)
        return resultBody(kRetParameter);
    meter.state.ucDcRunning = start.ucStartStop;
    return resultBody(kRetOk);
}

Body dcResult(Meter& meter, std::span<const uint8_t> request)
{
    using Response = wire::DcMeasResultResponse;
    if (request.size() < sizeof(wire::ByteRequest))
        return refusalBody<Response>(kRetParameter);
    const State& state = meter.state;
    if (!state.ucDcRunning)
        return refusalBody<Response>(kRetNotRunning);
    const SupplyState supply = supplyState(meter.scene, state.ucInput, supplyCodeNow(state));
    Response response{};
    response.ulDcV =
        static_cast<uint32_t>(std::lround(dcVolt(meter.scene.inputs[state.ucInput], supply) * 1e3));
    return toBody(response);
}

} // namespace vmeter

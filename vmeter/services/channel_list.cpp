// Multi-channel measurement and scan: one list of channels, measured round and round or once.
#include "signal/channel_list.h"
#include "meas/wire_multi.h"
#include "services/measurement.h"
#include "services/readings.h"
#include "services/results.h"
#include "signal/tuner.h"

#include <algorithm>

namespace vmeter {
namespace {

namespace wire = vx63::wire;

// Whether a part can be measured: 1 to 40 channels, each usable by itself.
bool isUsable(const wire::MultiMeasRequest& part)
{
    if (part.ucKind > wire::kKindMore || part.ucRegCount == 0 || part.ucRegCount > wire::kPartChannels)
        return false;
    return std::ranges::all_of(std::span(part.channels, part.ucRegCount), [](const wire::Channel& channel) {
        return vmeter::isUsable(startOf(channel));
    });
}

} // namespace

Body listStart(Meter& meter, std::span<const uint8_t> request)
{
    const auto part = bodyAs<wire::MultiMeasRequest>(request);
    if (request.size() < sizeof part)
        return resultBody(kRetParameter);
    if (part.ucKind == wire::kKindStop) {
        if (meter.state.run == Run::none || isList(meter.state.run))
            stopRun(meter); // drops what is registered, too
        return resultBody(kRetOk);
    }
    if (!isUsable(part))
        return resultBody(kRetParameter);
    const uint8_t ucRet = tunerRet(meter.state, {Run::multi, Run::scan});
    if (ucRet != kRetOk)
        return resultBody(ucRet);
    if (part.ucRegIdx == 0)
        stopRun(meter);
    if (!registerPart(meter.state, part))
        return resultBody(kRetNotRunning);
    if (part.ucKind != wire::kKindMore)
        startList(meter, part.ucKind == wire::kKindMulti ? Run::multi : Run::scan);
    return resultBody(kRetOk);
}

Body listResult(Meter& meter, std::span<const uint8_t> request)
{
    using Response = wire::MultiResultResponse;
    const auto read = bodyAs<wire::MultiResultRequest>(request);
    if (request.size() < sizeof read)
        return refusalBody<Response>(kRetParameter);
    const State& state = meter.state;
    if (!isList(state.run))
        return refusalBody<Response>(kRetNotRunning);
    if (read.usIndex >= state.list.usCount)
        return refusalBody<Response>(kRetParameter);

    Response response{};
    response.readIdx = static_cast<uint8_t>(read.usIndex);
    response.currIdx = currentChannel(state);
    const auto result = channelResult(meter, read.usIndex);
    if (!result)
        return toBody(response);
    if (supplyState(meter.scene, state.ucInput, result->ucSupplyCode).fault)
        return refusalBody<Response>(kRetPowerSupply);
    fillReadings(response, {.start = startOf(state.list.channels[read.usIndex]),
                            .seen = result->seen,
                            .ucSupplyCode = result->ucSupplyCode,
                            .errors = result->locked ? &result->errors : nullptr});
    response.stat |= kStatMeasured;
    return toBody(response);
}

} // namespace vmeter

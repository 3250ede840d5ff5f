// What the meter is, and its failure record.
#include "device/wire.h"
#include "services/results.h"
#include "services/system.h"

#include <algorithm>

namespace vmeter {

namespace wire = vx63::wire;

Body failureRecord(Meter& meter, std::span<const uint8_t>)
{
    return toBody(meter.state.device.failure);
}

Body productData(Meter& meter, std::span<const uint8_t>)
{
    return toBody(meter.state.device.product);
}

Body setFailure(Meter& meter, std::span<const uint8_t> request)
{
    const auto failure = bodyAs<wire::SetFailStatRequest>(request);
    if (request.size() < sizeof failure || failure.ucStat > 1)
        return resultBody(kRetParameter);
    wire::FailInfoResponse& record = meter.state.device.failure;
    record.usCode = failure.usCode;
    record.ucStat = failure.ucStat;
    std::copy(std::begin(failure.ucAddInfo), std::end(failure.ucAddInfo), record.ucAddInfo);
    return resultBody(kRetOk);
}

} // namespace vmeter

// Display, power, standby and developer mode.
#include "services/power.h"
#include "services/results.h"
#include "services/system.h"

namespace vmeter {
namespace {

constexpr uint8_t kModeMeter = 0;

} // namespace

namespace wire = vx63::wire;

Body setBrightness(Meter& meter, std::span<const uint8_t> request)
{
    const auto brightness = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof brightness || brightness.ucArg > kBrightnessMax)
        return resultBody(kRetParameter);
    meter.state.device.ucBrightness = brightness.ucArg;
    return resultBody(kRetOk);
}

Body rebootMeter(Meter& meter, std::span<const uint8_t> request)
{
    if (request.size() < sizeof(wire::ByteRequest))
        return resultBody(kRetParameter);
    reboot(meter, steadyMs());
    return resultBody(kRetOk);
}

Body shutDown(Meter& meter, std::span<const uint8_t> request)
{
    if (request.size() < sizeof(wire::ByteRequest))
        return resultBody(kRetParameter);
    meter.state.device.ucOff = 1;
    return resultBody(kRetOk);
}

Body standbyMeter(Meter& meter, std::span<const uint8_t> request)
{
    const auto mode = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof mode || mode.ucArg != kModeMeter)
        return resultBody(kRetParameter);
    if (meter.state.device.update.ucRunning)
        return resultBody(kRetNotNow);
    fallAsleep(meter.state, Standby::meter);
    return resultBody(kRetOk);
}

Body wakeUpMeter(Meter& meter, std::span<const uint8_t> request)
{
    const auto mode = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof mode || mode.ucArg != kModeMeter)
        return resultBody(kRetParameter);
    DeviceState& device = meter.state.device;
    if (device.standby != Standby::none && device.ucLowBattery)
        return resultBody(kRetNotNow);
    device.standby = Standby::none;
    return resultBody(kRetOk);
}

Body setDeveloperMode(Meter& meter, std::span<const uint8_t> request)
{
    const auto onOff = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof onOff || onOff.ucArg > 1)
        return resultBody(kRetParameter);
    meter.state.device.ucDeveloperMode = onOff.ucArg;
    return resultBody(kRetOk);
}

} // namespace vmeter

// Standby, low battery and calibration in the measurement service. docs/services.md tells modes and results.
#include "services/measurement.h"

#include "services/power.h"
#include "services/results.h"

#include "device/wire.h"

namespace vmeter {
namespace {

namespace wire = vx63::wire;

constexpr uint8_t kRetNoChange = 3; // of the low-battery notice

constexpr uint8_t kModeMeasurement = 1;
constexpr uint8_t kCalibrationModeMax = 1;

} // namespace

Body standbyMeasurement(Meter& meter, std::span<const uint8_t> request)
{
    const auto mode = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof mode || mode.ucArg != kModeMeasurement)
        return resultBody(kRetParameter);
    if (meter.state.device.standby == Standby::none)
        fallAsleep(meter.state, Standby::measurement);
    return resultBody(kRetOk);
}

Body wakeUpMeasurement(Meter& meter, std::span<const uint8_t> request)
{
    const auto mode = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof mode || mode.ucArg != kModeMeasurement)
        return resultBody(kRetParameter);
    DeviceState& device = meter.state.device;
    if (device.standby == Standby::meter || (device.standby != Standby::none && device.ucLowBattery))
        return resultBody(kRetNotNow);
    device.standby = Standby::none;
    return resultBody(kRetOk);
}

Body calibrate(Meter& meter, std::span<const uint8_t> request)
{
    const auto mode = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof mode || mode.ucArg > kCalibrationModeMax)
        return resultBody(kRetParameter);
    DeviceState& device = meter.state.device;
    ++device.ulCalibrations;
    device.ucCalibrationMode = mode.ucArg;
    return resultBody(kRetOk);
}

Body standbyState(Meter& meter, std::span<const uint8_t> request)
{
    wire::StandbyStatResponse response{};
    if (request.size() < sizeof(wire::ByteRequest))
        response.ucRet = kRetParameter;
    else
        response.ulStandbyStat = static_cast<uint32_t>(meter.state.device.standby);
    return toBody(response);
}

Body lowBattery(Meter& meter, std::span<const uint8_t> request)
{
    const auto low = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof low || low.ucArg > 1)
        return resultBody(kRetParameter);
    uint8_t& known = meter.state.device.ucLowBattery;
    if (known == low.ucArg)
        return resultBody(kRetNoChange);
    known = low.ucArg;
    return resultBody(kRetOk);
}

Body forceStandby(Meter& meter, std::span<const uint8_t> request)
{
    if (request.size() < sizeof(wire::ByteRequest))
        return resultBody(kRetParameter);
    if (meter.state.device.standby == Standby::none)
        fallAsleep(meter.state, Standby::measurement);
    return resultBody(kRetOk);
}

Body forceWakeUp(Meter& meter, std::span<const uint8_t> request)
{
    if (request.size() < sizeof(wire::ByteRequest))
        return resultBody(kRetParameter);
    meter.state.device.standby = Standby::none;
    return resultBody(kRetOk);
}

} // namespace vmeter

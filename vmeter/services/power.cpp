#include "services/power.h"

#include "libvx63.h"

#include <ctime>

namespace vmeter {
namespace {

// All that the measurement service remembers is gone.
void forgetMeasurements(State& state)
{
    State fresh{};
    fresh.ulSimMs = state.ulSimMs;
    fresh.angle = state.angle; // the device service's
    fresh.device = state.device;
    state = fresh;
}

} // namespace

uint64_t steadyMs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000 + static_cast<uint64_t>(now.tv_nsec) / 1'000'000;
}

std::string_view reasonForSilence(const DeviceState& device, uint64_t nowMs)
{
    if (device.ucOff)
        return "the meter is off";
    if (nowMs < device.ulRebootEndMs)
        return "the meter is rebooting";
    return "";
}

bool sleepsThrough(const DeviceState& device, uint8_t ucProcId, uint16_t usCmd)
{
    if (device.standby == Standby::none || ucProcId != PROC_ID_PMEAS)
        return false;
    switch (usCmd) {
    case 0x000E: // standby
    case 0x000F: // wake-up
    case 0x0017: // measurement status
    case 0x0018: // standby state
    case 0x0019: // low battery
    case 0x001D: // forced standby
    case 0x001E: // forced wake-up
        return false;
    default:
        return true;
    }
}

void fallAsleep(State& state, Standby standby)
{
    const uint8_t ucInput = state.ucInput;
    forgetMeasurements(state);
    state.ucInput = ucInput;
    state.device.standby = standby;
}

void reboot(Meter& meter, uint64_t nowMs)
{
    forgetMeasurements(meter.state);
    meter.state.angle.ucOn = 0;
    meter.state.ulSimMs += meter.scene.device.power.ulRebootMs;
    DeviceState& device = meter.state.device;
    device.ulRebootEndMs = nowMs + meter.scene.device.power.ulRebootMs;
    ++device.ulReboots;
    device.standby = Standby::none;
    device.buzzer.ucSounding = 0;
    device.update.ucRunning = 0;
}

} // namespace vmeter

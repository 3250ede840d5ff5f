// The device service's report on the meter itself. docs/services.md tells what its values mean.
#include "services/device.h"

#include "device/wire.h"

namespace vmeter {

namespace wire = vx63::wire;

namespace {

constexpr unsigned kUsb1 = 0x0001;
constexpr unsigned kUsb2 = 0x0002;

} // namespace

Body deviceStatus(Meter& meter, std::span<const uint8_t>)
{
    const ConditionScene& condition = meter.scene.device.condition;
    wire::DeviceStatusResponse response{};
    response.usStat0 = static_cast<uint16_t>((condition.usb1 ? kUsb1 : 0) | (condition.usb2 ? kUsb2 : 0));
    response.ucStat2 = condition.ucBatteryPercent;
    response.ucStat3 = condition.externalPower;
    response.ucStat4 = static_cast<uint8_t>(condition.charging);
    response.ucStat5 = meter.state.device.ucLowBattery;
    response.ucStat6 = condition.ucTemperatureC;
    response.usStat8 = condition.usBatteryMv;
    return toBody(response);
}

} // namespace vmeter

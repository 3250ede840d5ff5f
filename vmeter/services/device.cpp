// The device service. docs/measured-values.md tells units and results.
#include "services/device.h"
#include "services/results.h"
#include "signal/channel_list.h"
#include "signal/power_supply.h"

#include "meas/wire.h"

namespace vmeter {
namespace {

namespace wire = vx63::wire;

Body powerSupplyInfo(Meter& meter, std::span<const uint8_t> request)
{
    if (request.size() < sizeof(wire::ByteRequest))
        return refusalBody<wire::PowerSupplyInfoResponse>(kRetParameter);
    wire::PowerSupplyInfoResponse response{};
    const SupplyState supply = supplyState(meter.scene, meter.state.ucInput, supplyCodeNow(meter.state));
    response.ucPowerSupply = supply.ucCode;
    response.ucVolt = supply.ucVolt;
    response.usAdVal = supplyAdVal(supply.ucVolt);
    response.ulCurrentM = supply.ulCurrentMa;
    response.ulElecPowerM = supply.ucVolt * supply.ulCurrentMa;
    return toBody(response);
}

constexpr Command kCommands[] = {
    {0x0006, "device-status", deviceStatus},
    {0x0007, "angle-start", angleStart},
    {0x001F, "angle-calibration-start", angleCalibrationStart},
    {0x0020, "angle-calibration-status", angleCalibrationStatus},
    {0x0021, "angle-detail", angleDetail},
    {0x0022, "power-supply-info", powerSupplyInfo},
};

} // namespace

const Service kDeviceService{6, "dev", kCommands};

} // namespace vmeter

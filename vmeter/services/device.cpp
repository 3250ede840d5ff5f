// The device service. docs/measured-values.md tells units and results.
#include "service.h"
#include "services/device_status.h"
#include "services/results.h"
#include "signal/power_supply.h"

#include "meas/wire.h"

namespace vmeter {
namespace {

namespace wire = vx63::wire;

Body powerSupplyInfo(Meter& meter, std::span<const uint8_t> request)
{
    wire::PowerSupplyInfoResponse response{};
    if (request.size() < sizeof(wire::ByteRequest)) {
        response.ucRet = kRetParameter;
        return toBody(response);
    }
    const SupplyState supply = supplyState(meter.scene, meter.state.ucInput, meter.state.ucSupplyCode);
    response.ucPowerSupply = supply.ucCode;
    response.ucVolt = supply.ucVolt;
    response.usAdVal = supplyAdVal(supply.ucVolt);
    response.ulCurrentM = supply.ulCurrentMa;
    response.ulElecPowerM = supply.ucVolt * supply.ulCurrentMa;
    return toBody(response);
}

constexpr Command kCommands[] = {
    {0x0006, "device-status", deviceStatus},
    {0x0022, "power-supply-info", powerSupplyInfo},
};

} // namespace

const Service kDeviceService{6, "dev", kCommands};

} // namespace vmeter

#include "signal/power_supply.h"

namespace vmeter {

uint8_t supplyCode(uint8_t ucSupplyLevel, uint8_t ucSupplyKind)
{
    if (ucSupplyLevel == 0 && ucSupplyKind == 0)
        return 0;
    if ((ucSupplyLevel == 1 || ucSupplyLevel == 2) && ucSupplyKind <= 1)
        return static_cast<uint8_t>(ucSupplyLevel + 2 * ucSupplyKind);
    return UINT8_MAX;
}

SupplyState supplyState(const Scene& scene, uint8_t ucInput, uint8_t ucCode)
{
    if (ucCode == 0)
        return {};
    const Lnb& lnb = scene.inputs[ucInput].lnb;
    if (lnb.shortCircuit || lnb.ulCurrentMa > kSupplyLimitMa)
        return {.ucCode = ucCode, .ucVolt = 0, .tone = false, .fault = true, .ulCurrentMa = kSupplyLimitMa};
    const bool high = ucCode == 2 || ucCode == 4;
    return {.ucCode = ucCode,
            .ucVolt = static_cast<uint8_t>(high ? 15 : 11),
            .tone = ucCode >= 3,
            .fault = false,
            .ulCurrentMa = lnb.ulCurrentMa};
}

uint16_t supplyAdVal(uint8_t ucVolt)
{
    return static_cast<uint16_t>((ucVolt * 1023u + 10u) / 20u); // rounded
}

} // namespace vmeter

#include "measure/supply.h"

#include "common/exchange.h"
#include "common/names.h"
#include "common/text.h"

namespace tool {

PowerSupplyInfo readSupply()
{
    PowerSupplyInfo info{};
    require("cannot read the power supply", [&] { return vx63_getPowerSupplyInfo(&info); });
    return info;
}

Rows supplyRows(const PowerSupplyInfo& info)
{
    const auto name = powerSupplyName(info.ucPowerSupply);
    return {
        {"Power supply", format("%u", info.ucPowerSupply) + (name ? " (" + std::string(*name) + ")" : "")},
        {"Voltage", format("%u V", info.ucVolt)},
        {"Current", format("%u mA", info.ulCurrentM)},
        {"Power", format("%u mW", info.ulElecPowerM)},
        {"A/D converter", format("%u", info.usAdVal)},
    };
}

Json supplyJson(const PowerSupplyInfo& info)
{
    return {
        {"power_supply", info.ucPowerSupply}, {"voltage_v", info.ucVolt}, {"current_ma", info.ulCurrentM},
        {"power_mw", info.ulElecPowerM},      {"ad_value", info.usAdVal},
    };
}

} // namespace tool

// vx63 status: what the services say of themselves.
#include "commands.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/json.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "device/device_status.h"
#include "libvx63.h"
#include "measure/supply.h"

namespace tool {

namespace {

struct Options {
    int32_t id = kDefaultProcessId;
    bool json = false;
};

int showStatus(const Options& options)
{
    const Identity identity(options.id);
    MeasStatus status{};
    require("cannot read the measurement status", [&] { return vx63_getMeasStatus(&status); });
    const PowerSupplyInfo supply = readSupply();
    const DeviceStatus device = readDeviceStatus();
    const bool measuring = (status.ulMeasStat & VX63_MEAS_SINGLE) != 0;
    const bool locked = (status.ulMeasStat & VX63_MEAS_LOCKED) != 0;
    const bool fault = (status.usInputStat & VX63_INPUT_STAT_SUPPLY_FAULT) != 0;
    const unsigned input = (status.usInputStat & VX63_INPUT_STAT_1) != 0 ? 1 : 0;
    if (options.json) {
        const Json json = {
            {"measuring", measuring},
            {"locked", locked},
            {"input", input},
            {"power_supply_fault", fault},
            {"measurement_status_code", status.ulMeasStat},
            {"input_status_code", status.usInputStat},
            {"power_supply", supplyJson(supply)},
            {"device", deviceStatusJson(device)},
        };
        print(json.line());
        return kExitSuccess;
    }
    Rows rows = {
        {"Measuring", measuring ? "yes" : "no"},
        {"Lock", locked ? "yes" : "no"},
        {"Input", format("%u", input)},
        {"Measurement bits", format("0x%08X", status.ulMeasStat)},
        {"Input bits", format("0x%04X", status.usInputStat)},
        {"Supply fault", fault ? "yes" : "no"},
    };
    const Rows supplies = supplyRows(supply);
    rows.insert(rows.end(), supplies.begin(), supplies.end());
    const Rows devices = deviceStatusRows(device);
    rows.insert(rows.end(), devices.begin(), devices.end());
    print(aligned(rows));
    return kExitSuccess;
}

} // namespace

void addStatus(CommandLine& program)
{
    program.addCommand("status", "Show how the meter is: measurement, power supply, battery",
                       "vx63 status --json", showStatus);
}

} // namespace tool

#include "signal/tuner.h"
#include "signal/channel_list.h"
#include "signal/demodulator.h"
#include "signal/power_supply.h"

namespace vmeter {

void startRun(Meter& meter, Run run, const vx63::wire::StartRequest& start)
{
    stopRun(meter);
    meter.state.run = run;
    meter.state.ucSupplyCode = supplyCode(start.ucSupplyLevel, start.ucSupplyKind);
    meter.state.demodulator.start = start;
    meter.state.demodulator.ulSearchMs = meter.state.ulSimMs;
    followLock(meter, observe(meter, start));
}

void stopRun(Meter& meter)
{
    meter.state.ucSupplyCode = supplyCodeNow(meter.state);
    meter.state.run = Run::none;
    meter.state.demodulator = {};
    meter.state.constellation = {};
    meter.state.list.usCount = 0; // the channels behind the count are never read
}

} // namespace vmeter

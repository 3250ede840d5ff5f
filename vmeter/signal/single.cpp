#include "signal/single.h"
#include "signal/random.h"

#include <algorithm>

namespace vmeter {
namespace {

// A demodulator that has locked holds on a little below the C/N that it needed to lock.
constexpr double kHoldDb = 1.0;

double fluctuation(const Meter& meter, Purpose purpose, uint32_t ifKhz, double sigmaDb)
{
    Random random(meter.scene.seed, meter.state.ulSimMs, purpose, ifKhz);
    return sigmaDb * random.normal();
}

bool canDemodulate(const Signal& signal, const vx63::wire::StartRequest& start)
{
    const bool modulationFits =
        start.usMod == 0 || (start.usMod & modulationBit(signal.system, signal.modulation)) != 0;
    return static_cast<uint16_t>(signal.system) == start.usBdSys && signal.modulation != Modulation::none &&
           modulationFits;
}

} // namespace

Observation observe(const Meter& meter, const vx63::wire::StartRequest& start)
{
    const State& state = meter.state;
    const uint32_t ifKhz = intermediateKhz(start.ulFreq, start.ulLoFreq);
    const SupplyState supply = supplyState(meter.scene, state.ucInput, state.ucSupplyCode);
    const Reception reception =
        receive(meter.scene, state.ucInput, supply, ifKhz, static_cast<System>(start.usBdSys));
    return {
        .reception = reception,
        .levelDbuv =
            reception.levelDbuv + fluctuation(meter, Purpose::level, ifKhz, meter.scene.levelSigmaDb),
        .cnDb = reception.cnDb + fluctuation(meter, Purpose::cn, ifKhz, meter.scene.cnSigmaDb),
    };
}

bool isUsable(const vx63::wire::StartRequest& start)
{
    const SystemInfo* system = findSystem(start.usBdSys);
    if (!system || supplyCode(start.ucSupplyLevel, start.ucSupplyKind) > kSupplyCodeMax)
        return false;
    if (start.usMod != 0 && (start.usMod & modulationBits(system->system)) == 0)
        return false;
    const uint32_t ifKhz = intermediateKhz(start.ulFreq, start.ulLoFreq);
    return ifKhz >= kTunerMinKhz && ifKhz <= kTunerMaxKhz;
}

void startSingle(Meter& meter, const vx63::wire::StartRequest& start)
{
    meter.state.ucSupplyCode = supplyCode(start.ucSupplyLevel, start.ucSupplyKind);
    meter.state.single = {};
    meter.state.single.start = start;
    meter.state.single.ulSearchMs = meter.state.ulSimMs;
    meter.state.single.ucRunning = 1;
    followLock(meter, observe(meter, start));
}

void stopSingle(Meter& meter)
{
    meter.state.single = {};
}

void followLock(Meter& meter, const Observation& now)
{
    SingleState& single = meter.state.single;
    const uint64_t ulNowMs = meter.state.ulSimMs;
    const Signal* signal = now.reception.wanted;
    const auto ulWanted = static_cast<uint32_t>(signal ? signal - meter.scene.signals.data() + 1 : 0);
    if (ulWanted != single.ulWanted) { // tuned anew, or the input or the supply has changed
        single.ulWanted = ulWanted;
        single.ulSearchMs = ulNowMs;
        single.ucLocked = 0;
    }
    const double hold = single.ucLocked ? kHoldDb : 0.0;
    if (!signal || !canDemodulate(*signal, single.start) ||
        now.cnDb < infoOf(symbolModulation(*signal)).thresholdDb - hold) {
        single.ucLocked = 0;
        single.ulSearchMs = ulNowMs;
    } else if (!single.ucLocked && ulNowMs - single.ulSearchMs >= signal->ulLockMs) {
        single.ucLocked = 1;
        single.ulCountMs = single.ulSearchMs + signal->ulLockMs;
    }
}

BitErrors countErrors(Meter& meter, const Observation& now)
{
    SingleState& single = meter.state.single;
    const Signal& signal = *now.reception.wanted;
    const double seconds = static_cast<double>(meter.state.ulSimMs - single.ulCountMs) / 1e3;
    single.ulCountMs = meter.state.ulSimMs;
    const double bits = std::min(bitRate(signal) * seconds, static_cast<double>(UINT32_MAX));
    const auto ulTotal = static_cast<uint32_t>(bits);
    Random random(meter.scene.seed, meter.state.ulSimMs, Purpose::bitErrors, signal.ifKhz());
    return {.ulTotal = ulTotal,
            .ulErrors = drawErrors(random, ulTotal, bitErrorRatio(symbolModulation(signal), now.cnDb))};
}

} // namespace vmeter

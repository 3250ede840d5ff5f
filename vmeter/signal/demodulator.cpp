#include "signal/demodulator.h"
#include "signal/bit_errors.h"
#include "signal/power_supply.h"
#include "signal/random.h"

#include <algorithm>

namespace vmeter {
namespace {

// A demodulator that has locked holds on a little below the C/N that it needed to lock.
constexpr double kHoldDb = 1.0;

bool isWanted(const vx63::wire::StartRequest& start, const Signal& signal)
{
    const bool modulationFits =
        start.usMod == 0 || (start.usMod & modulationBit(signal.system, signal.modulation)) != 0;
    return static_cast<uint16_t>(signal.system) == start.usBdSys && signal.modulation != Modulation::none &&
           modulationFits;
}

} // namespace

Observation observeAt(const Meter& meter, const vx63::wire::StartRequest& start, uint8_t ucSupplyCode,
                      uint64_t ulSimMs)
{
    const Scene& scene = meter.scene;
    const uint8_t ucInput = meter.state.ucInput;
    const uint32_t ifKhz = intermediateKhz(start.ulFreq, start.ulLoFreq);
    const Reception reception = receive(scene, ucInput, supplyState(scene, ucInput, ucSupplyCode), ifKhz,
                                        static_cast<System>(start.usBdSys));
    const double level = Random(scene.seed, ulSimMs, Purpose::level, ifKhz).normal();
    const double cn = Random(scene.seed, ulSimMs, Purpose::cn, ifKhz).normal();
    return {.reception = reception,
            .levelDbuv = reception.levelDbuv + scene.levelSigmaDb * level,
            .cnDb = reception.cnDb + scene.cnSigmaDb * cn};
}

Observation observe(const Meter& meter, const vx63::wire::StartRequest& start)
{
    return observeAt(meter, start, meter.state.ucSupplyCode, meter.state.ulSimMs);
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

bool canLock(const vx63::wire::StartRequest& start, const Reception& reception, double cnDb)
{
    const Signal* signal = reception.wanted;
    return signal && isWanted(start, *signal) && cnDb >= infoOf(symbolModulation(*signal)).thresholdDb;
}

void followLock(Meter& meter, const Observation& now)
{
    DemodulatorState& demodulator = meter.state.demodulator;
    const uint64_t ulNowMs = meter.state.ulSimMs;
    const Signal* signal = now.reception.wanted;
    const auto ulWanted = static_cast<uint32_t>(signal ? signal - meter.scene.signals.data() + 1 : 0);
    if (ulWanted != demodulator.ulWanted) { // tuned anew, or the input or the supply has changed
        demodulator.ulWanted = ulWanted;
        demodulator.ulSearchMs = ulNowMs;
        demodulator.ucLocked = 0;
    }
    const double hold = demodulator.ucLocked ? kHoldDb : 0.0;
    if (!canLock(demodulator.start, now.reception, now.cnDb + hold)) {
        demodulator.ucLocked = 0;
        demodulator.ulSearchMs = ulNowMs;
    } else if (!demodulator.ucLocked && ulNowMs - demodulator.ulSearchMs >= signal->ulLockMs) {
        demodulator.ucLocked = 1;
        demodulator.ulCountMs = demodulator.ulSearchMs + signal->ulLockMs;
    }
}

BitErrors countErrors(Meter& meter, const Observation& now)
{
    DemodulatorState& demodulator = meter.state.demodulator;
    const double seconds = static_cast<double>(meter.state.ulSimMs - demodulator.ulCountMs) / 1e3;
    demodulator.ulCountMs = meter.state.ulSimMs;
    return errorsOver(meter.scene, now, seconds, meter.state.ulSimMs);
}

BitErrors errorsOver(const Scene& scene, const Observation& seen, double seconds, uint64_t ulSimMs)
{
    const Signal& signal = *seen.reception.wanted;
    const auto ulTotal =
        static_cast<uint32_t>(std::min(bitRate(signal) * seconds, static_cast<double>(UINT32_MAX)));
    Random random(scene.seed, ulSimMs, Purpose::bitErrors, signal.ifKhz());
    return {.ulTotal = ulTotal,
            .ulErrors = drawErrors(random, ulTotal, bitErrorRatio(symbolModulation(signal), seen.cnDb))};
}

} // namespace vmeter

// The measurement service. docs/measured-values.md tells units, bits and results.
#include "service.h"
#include "services/power_meas.h"
#include "services/results.h"
#include "signal/power_supply.h"
#include "signal/single.h"

#include "meas/wire.h"

#include <algorithm>
#include <cmath>

namespace vmeter {
namespace {

namespace wire = vx63::wire;

// Bits of ulMeasStat.
constexpr uint32_t kMeasSingle = 0x00000001;
constexpr uint32_t kMeasLocked = 0x00000002;

// Bits of usInputStat.
constexpr uint16_t kInputCable = 0x0001;
constexpr uint16_t kInputSupplyOn = 0x0002;
constexpr uint16_t kInputSupply15V = 0x0004;
constexpr uint16_t kInputSupplyTone = 0x0008;
constexpr uint16_t kInputSupplyFault = 0x0010;
constexpr uint16_t kInputMixBandSupply = 0x0020;

// Bits of stat.
constexpr uint16_t kStatSignal = 0x0001;
constexpr uint16_t kStatLocked = 0x0002;
constexpr uint16_t kStatBitsCounted = 0x0004;
constexpr uint16_t kStatSupplyOn = 0x0008;

// Tenths of a decibel; what lies below 0 reads 0.
uint32_t tenths(double db)
{
    return static_cast<uint32_t>(std::lround(std::max(0.0, db) * 10.0));
}

// The demodulator notices at once what a change of the input or the supply does to its signal.
void applyChange(Meter& meter)
{
    if (meter.state.single.ucRunning)
        followLock(meter, observe(meter, meter.state.single.start));
}

Body setInput(Meter& meter, std::span<const uint8_t> request)
{
    const auto input = bodyAs<wire::SetInputRequest>(request);
    if (request.size() < sizeof input || input.ucInput >= kInputCount)
        return resultBody(kRetParameter);
    meter.state.ucInput = input.ucInput;
    applyChange(meter);
    return resultBody(kRetOk);
}

Body powerSupply(Meter& meter, std::span<const uint8_t> request)
{
    const auto supply = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof supply || supply.ucArg > kSupplyCodeMax)
        return resultBody(kRetParameter);
    meter.state.ucSupplyCode = supply.ucArg;
    applyChange(meter);
    return resultBody(kRetOk);
}

Body mixBandSupply(Meter& meter, std::span<const uint8_t> request)
{
    const auto onOff = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof onOff || onOff.ucArg > 1)
        return resultBody(kRetParameter);
    meter.state.ucMixBandSupply = onOff.ucArg;
    return resultBody(kRetOk);
}

Body measStatus(Meter& meter, std::span<const uint8_t> request)
{
    wire::MeasStatusResponse response{};
    if (request.size() < sizeof(wire::ByteRequest)) {
        response.ucRet = kRetParameter;
        return toBody(response);
    }
    const State& state = meter.state;
    if (state.single.ucRunning) {
        followLock(meter, observe(meter, state.single.start));
        response.ulMeasStat = kMeasSingle | (state.single.ucLocked ? kMeasLocked : 0);
    }
    const SupplyState supply = supplyState(meter.scene, state.ucInput, state.ucSupplyCode);
    unsigned input = 0;
    input |= state.ucInput == 1 ? kInputCable : 0;
    input |= supply.ucCode != 0 ? kInputSupplyOn : 0;
    input |= supply.ucVolt == 15 ? kInputSupply15V : 0;
    input |= supply.tone ? kInputSupplyTone : 0;
    input |= supply.fault ? kInputSupplyFault : 0;
    input |= state.ucMixBandSupply ? kInputMixBandSupply : 0;
    response.usInputStat = static_cast<uint16_t>(input);
    return toBody(response);
}

Body singleStart(Meter& meter, std::span<const uint8_t> request)
{
    const auto start = bodyAs<wire::StartRequest>(request);
    if (request.size() < sizeof start || start.ucStartStop > 1)
        return resultBody(kRetParameter);
    if (start.ucStartStop == 0) {
        stopSingle(meter);
        return resultBody(kRetOk);
    }
    if (!isUsable(start))
        return resultBody(kRetParameter);
    startSingle(meter, start);
    return resultBody(kRetOk);
}

Body singleResult(Meter& meter, std::span<const uint8_t> request)
{
    wire::SingleResultResponse response{};
    const SingleState& single = meter.state.single;
    const SupplyState supply = supplyState(meter.scene, meter.state.ucInput, meter.state.ucSupplyCode);
    if (request.size() < sizeof(wire::ByteRequest))
        response.ucRet = kRetParameter;
    else if (!single.ucRunning)
        response.ucRet = kRetNotRunning;
    else if (supply.fault)
        response.ucRet = kRetPowerSupply;
    if (response.ucRet != kRetOk)
        return toBody(response);

    const Observation now = observe(meter, single.start);
    followLock(meter, now);
    response.lock = single.ucLocked;
    response.mesCond = single.start.usCondition;
    response.bdSys = single.start.usBdSys;
    response.LEVEL = tenths(now.levelDbuv);
    response.CNR = tenths(now.cnDb);
    unsigned stat = 0;
    stat |= now.cnDb >= 0.0 ? kStatSignal : 0;
    stat |= supply.ucCode != 0 ? kStatSupplyOn : 0;
    if (single.ucLocked) {
        const Signal& signal = *now.reception.wanted;
        const BitErrors errors = countErrors(meter, now);
        response.bdSys = static_cast<uint16_t>(signal.system);
        response.BER_TOTAL = errors.ulTotal;
        response.BER_ERR = errors.ulErrors;
        response.TSID = signal.usTsid;
        response.GI = signal.ucGuardInterval;
        response.LAYER = signal.ucLayers;
        response.MOD = modulationBit(signal.system, signal.modulation);
        stat |= kStatLocked;
        stat |= errors.ulTotal != 0 ? kStatBitsCounted : 0;
    }
    response.stat = static_cast<uint16_t>(stat);
    return toBody(response);
}

constexpr Command kCommands[] = {
    {0x000E, "standby", standbyMeasurement}, {0x000F, "wakeup", wakeUpMeasurement},
    {0x0016, "calibration", calibrate},      {0x0018, "standby-state", standbyState},
    {0x0019, "low-battery", lowBattery},     {0x001D, "force-standby", forceStandby},
    {0x001E, "force-wakeup", forceWakeUp},   {0x0015, "power-supply", powerSupply},
    {0x0017, "meas-status", measStatus},     {0x001C, "mix-band-supply", mixBandSupply},
    {0x0100, "set-input", setInput},         {0x0103, "single-start", singleStart},
    {0x0104, "single-result", singleResult},
};

} // namespace

const Service kMeasurementService{12, "meas", kCommands};

} // namespace vmeter

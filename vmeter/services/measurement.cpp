// The measurement service: its table, and what concerns all of its measurements. docs/measured-values.md
// tells units, bits and results.
#include "services/measurement.h"
#include "meas/wire.h"
#include "services/results.h"
#include "signal/channel_list.h"
#include "signal/power_supply.h"

#include <algorithm>

namespace vmeter {
namespace {

namespace wire = vx63::wire;

// Bits of ulMeasStat.
constexpr uint32_t kMeasSingle = 0x00000001;
constexpr uint32_t kMeasLocked = 0x00000002;
constexpr uint32_t kMeasMulti = 0x00000004;
constexpr uint32_t kMeasScan = 0x00000008;
constexpr uint32_t kMeasDelayProfile = 0x00000010;
constexpr uint32_t kMeasConstellation = 0x00000020;
constexpr uint32_t kMeasOptical = 0x00000040;
constexpr uint32_t kMeasDc = 0x00000080;

// Bits of usInputStat.
constexpr uint16_t kInputCable = 0x0001;
constexpr uint16_t kInputSupplyOn = 0x0002;
constexpr uint16_t kInputSupply15V = 0x0004;
constexpr uint16_t kInputSupplyTone = 0x0008;
constexpr uint16_t kInputSupplyFault = 0x0010;
constexpr uint16_t kInputMixBandSupply = 0x0020;

bool isOneChannel(Run run)
{
    return run == Run::single || run == Run::delayProfile;
}

// The demodulator notices at once what a change of the input or the supply does to its signal.
void applyChange(Meter& meter)
{
    if (isOneChannel(meter.state.run))
        followLock(meter, observe(meter, meter.state.demodulator.start));
}

Body setInput(Meter& meter, std::span<const uint8_t> request)
{
    const auto input = bodyAs<wire::SetInputRequest>(request);
    if (request.size() < sizeof input || input.ucInput >= kInputCount)
        return resultBody(kRetParameter);
    if (isList(meter.state.run))
        return resultBody(kRetBusy);
    meter.state.ucInput = input.ucInput;
    applyChange(meter);
    return resultBody(kRetOk);
}

Body powerSupply(Meter& meter, std::span<const uint8_t> request)
{
    const auto supply = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof supply || supply.ucArg > kSupplyCodeMax)
        return resultBody(kRetParameter);
    if (isList(meter.state.run)) // each channel brings its own
        return resultBody(kRetBusy);
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

uint32_t measStat(const State& state)
{
    uint32_t stat = 0;
    switch (state.run) {
    case Run::none:
        break;
    case Run::single:
        stat |= kMeasSingle;
        break;
    case Run::delayProfile:
        stat |= kMeasDelayProfile;
        break;
    case Run::multi:
        stat |= kMeasMulti;
        break;
    case Run::scan:
        stat |= isScanOver(state) ? 0 : kMeasScan;
        break;
    }
    stat |= state.demodulator.ucLocked ? kMeasLocked : 0;
    stat |= state.constellation.usCollected ? kMeasConstellation : 0;
    stat |= state.ulOpticalNm ? kMeasOptical : 0;
    stat |= state.ucDcRunning ? kMeasDc : 0;
    return stat;
}

Body measStatus(Meter& meter, std::span<const uint8_t> request)
{
    if (request.size() < sizeof(wire::ByteRequest))
        return refusalBody<wire::MeasStatusResponse>(kRetParameter);
    const State& state = meter.state;
    applyChange(meter); // time has gone on
    const SupplyState supply = supplyState(meter.scene, state.ucInput, supplyCodeNow(state));
    unsigned input = 0;
    input |= state.ucInput == 1 ? kInputCable : 0;
    input |= supply.ucCode != 0 ? kInputSupplyOn : 0;
    input |= supply.ucVolt == 15 ? kInputSupply15V : 0;
    input |= supply.tone ? kInputSupplyTone : 0;
    input |= supply.fault ? kInputSupplyFault : 0;
    input |= state.ucMixBandSupply ? kInputMixBandSupply : 0;
    wire::MeasStatusResponse response{};
    response.ulMeasStat = measStat(state);
    response.usInputStat = static_cast<uint16_t>(input);
    return toBody(response);
}

constexpr Command kCommands[] = {
    {0x000E, "standby", standbyMeasurement},
    {0x000F, "wakeup", wakeUpMeasurement},
    {0x0015, "power-supply", powerSupply},
    {0x0016, "calibration", calibrate},
    {0x0017, "meas-status", measStatus},
    {0x0018, "standby-state", standbyState},
    {0x0019, "low-battery", lowBattery},
    {0x001C, "mix-band-supply", mixBandSupply},
    {0x001D, "force-standby", forceStandby},
    {0x001E, "force-wakeup", forceWakeUp},
    {0x0100, "set-input", setInput},
    {0x0103, "single-start", singleStart},
    {0x0104, "single-result", singleResult},
    {0x0105, "constellation-start", constellationStart},
    {0x0106, "constellation-result", constellationResult},
    {0x0107, "delay-profile-start", delayProfileStart},
    {0x0108, "delay-profile-block", delayProfileBlock},
    {0x0109, "multi-start", listStart},
    {0x010B, "multi-result", listResult},
    {0x010C, "optical-start", opticalStart},
    {0x010D, "optical-result", opticalResult},
    {0x010E, "dc-start", dcStart},
    {0x010F, "dc-result", dcResult},
};

} // namespace

uint8_t tunerRet(const State& state, std::initializer_list<Run> kind)
{
    const bool isFree = state.run == Run::none || std::ranges::find(kind, state.run) != kind.end();
    return isFree ? kRetOk : kRetBusy;
}

const Service kMeasurementService{12, "meas", kCommands};

} // namespace vmeter

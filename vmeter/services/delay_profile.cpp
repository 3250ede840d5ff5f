// Delay profile of a terrestrial channel.
#include "signal/delay_profile.h"
#include "meas/wire.h"
#include "services/measurement.h"
#include "services/results.h"
#include "signal/demodulator.h"
#include "signal/tuner.h"

#include <algorithm>

namespace vmeter {
namespace {

namespace wire = vx63::wire;

// usStatus.
constexpr uint16_t kNoData = 0;
constexpr uint16_t kMeasuring = 1;
constexpr uint16_t kComplete = 2;

// Simulated time from lock to a complete profile.
constexpr uint32_t kProfileMs = 500;

constexpr uint32_t kBlockSamples = 400;
constexpr uint16_t kBlocks = (kProfileSamples + kBlockSamples - 1) / kBlockSamples;

uint16_t statusOf(const Meter& meter, const Observation& now)
{
    const DemodulatorState& demodulator = meter.state.demodulator;
    if (demodulator.ucLocked)
        return meter.state.ulSimMs - demodulator.ulCountMs >= kProfileMs ? kComplete : kMeasuring;
    return canLock(demodulator.start, now.reception, now.cnDb) ? kMeasuring : kNoData;
}

} // namespace

Body delayProfileStart(Meter& meter, std::span<const uint8_t> request)
{
    const auto start = bodyAs<wire::StartRequest>(request);
    if (request.size() < sizeof start || start.ucStartStop > wire::kStart)
        return resultBody(kRetParameter);
    if (start.ucStartStop == wire::kStop) {
        if (meter.state.run == Run::delayProfile)
            stopRun(meter);
        return resultBody(kRetOk);
    }
    if (!isUsable(start) || static_cast<System>(start.usBdSys) != System::terrestrial)
        return resultBody(kRetParameter);
    const uint8_t ucRet = tunerRet(meter.state, {Run::delayProfile});
    if (ucRet == kRetOk)
        startRun(meter, Run::delayProfile, start);
    return resultBody(ucRet);
}

Body delayProfileBlock(Meter& meter, std::span<const uint8_t> request)
{
    using Response = wire::DlyPrfResponse;
    const auto read = bodyAs<wire::DlyPrfRequest>(request);
    if (request.size() < sizeof read || read.usBlockNo >= kBlocks)
        return refusalBody<Response>(kRetParameter);
    if (meter.state.run != Run::delayProfile)
        return refusalBody<Response>(kRetNotRunning);
    if (supplyState(meter.scene, meter.state.ucInput, meter.state.ucSupplyCode).fault)
        return refusalBody<Response>(kRetPowerSupply);

    const Observation now = observe(meter, meter.state.demodulator.start);
    followLock(meter, now);
    Response response{};
    response.usStatus = statusOf(meter, now);
    response.usReadBlockNo = read.usBlockNo;
    if (response.usStatus != kComplete)
        return toBody(response);
    // All blocks show the profile as it was when it was complete.
    const uint64_t ulCompleteMs = meter.state.demodulator.ulCountMs + kProfileMs;
    const uint32_t first = read.usBlockNo * kBlockSamples;
    const uint32_t count = std::min(kBlockSamples, kProfileSamples - first);
    for (uint32_t i = 0; i < count; ++i) {
        Random random(meter.scene.seed, ulCompleteMs, Purpose::delayProfile, first + i);
        response.data[i] = profileSample(*now.reception.wanted, first + i, now.reception.cnDb, random);
    }
    return toBody(response);
}

} // namespace vmeter

// The readings that every result of a channel carries.
#pragma once

#include "signal/demodulator.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vmeter {

// Bits of stat.
inline constexpr uint16_t kStatSignal = 0x0001;
inline constexpr uint16_t kStatLocked = 0x0002;
inline constexpr uint16_t kStatBitsCounted = 0x0004;
inline constexpr uint16_t kStatSupplyOn = 0x0008;
inline constexpr uint16_t kStatMeasured = 0x0010; // in a list of channels alone

struct Readings {
    const vx63::wire::StartRequest& start;
    const Observation& seen;
    uint8_t ucSupplyCode;
    const BitErrors* errors; // null: not locked
};

// Tenths of a decibel; what lies below 0 reads 0.
inline uint32_t tenths(double db)
{
    return static_cast<uint32_t>(std::lround(std::max(0.0, db) * 10.0));
}

// Response: one of the wire structs with lock, stat, LEVEL and so on, zero so far.
template <class Response>
void fillReadings(Response& response, const Readings& readings)
{
    const Observation& seen = readings.seen;
    unsigned stat = 0;
    stat |= seen.cnDb >= 0.0 ? kStatSignal : 0;
    stat |= readings.ucSupplyCode != 0 ? kStatSupplyOn : 0;
    response.mesCond = readings.start.usCondition;
    response.bdSys = readings.start.usBdSys;
    response.LEVEL = tenths(seen.levelDbuv);
    response.CNR = tenths(seen.cnDb);
    if (readings.errors) {
        const Signal& signal = *seen.reception.wanted;
        response.lock = 1;
        response.bdSys = static_cast<uint16_t>(signal.system);
        response.BER_TOTAL = readings.errors->ulTotal;
        response.BER_ERR = readings.errors->ulErrors;
        response.TSID = signal.usTsid;
        response.GI = signal.ucGuardInterval;
        response.LAYER = signal.ucLayers;
        response.MOD = modulationBit(signal.system, signal.modulation);
        stat |= kStatLocked;
        stat |= readings.errors->ulTotal != 0 ? kStatBitsCounted : 0;
    }
    response.stat = static_cast<uint16_t>(stat);
}

// Those of the run on one channel at the present moment. Gives the observation; whether it is locked stands
// in the response.
template <class Response>
Observation fillPresent(Meter& meter, Response& response)
{
    const vx63::wire::StartRequest& start = meter.state.demodulator.start;
    const Observation now = observe(meter, start);
    followLock(meter, now);
    BitErrors errors{};
    const bool locked = meter.state.demodulator.ucLocked != 0;
    if (locked)
        errors = countErrors(meter, now);
    fillReadings(response, {.start = start,
                            .seen = now,
                            .ucSupplyCode = meter.state.ucSupplyCode,
                            .errors = locked ? &errors : nullptr});
    return now;
}

} // namespace vmeter

// The single measurement as time goes on: tuning, lock, and the count of bit errors.
#pragma once

#include "meter.h"
#include "signal/reception.h"

#include <cstdint>

namespace vmeter {

// What the meter sees at one moment, fluctuation included.
struct Observation {
    Reception reception; // without the fluctuation
    double levelDbuv;
    double cnDb; // minus infinity without a wanted signal
};

Observation observe(const Meter& meter, const vx63::wire::StartRequest& start);

// Whether a start can be measured at all: known system, a modulation of that system (0 for any), a
// frequency within the tuner's range, one of the five power supplies.
bool isUsable(const vx63::wire::StartRequest& start);

// Tunes and begins to search; a measurement that runs is given up. The start must be usable.
void startSingle(Meter& meter, const vx63::wire::StartRequest& start);
void stopSingle(Meter& meter);

// Lets the demodulator of the running measurement lock or lose lock, as the present moment has it.
void followLock(Meter& meter, const Observation& now);

struct BitErrors {
    uint32_t ulTotal;
    uint32_t ulErrors;
};

// Bits and bit errors since the lock or the last count, and begins a new count. Locked only.
BitErrors countErrors(Meter& meter, const Observation& now);

} // namespace vmeter

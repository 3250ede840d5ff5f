// The demodulator as time goes on: tuning, lock, and the count of bit errors.
#pragma once

#include "model/meter.h"
#include "signal/reception.h"

#include <cstdint>

namespace vmeter {

// What the meter sees at one moment, fluctuation included.
struct Observation {
    Reception reception; // without the fluctuation
    double levelDbuv;
    double cnDb; // minus infinity without a wanted signal
};

// At the present moment, with the power supply as it is.
Observation observe(const Meter& meter, const vx63::wire::StartRequest& start);

// At any moment, with any supply.
Observation observeAt(const Meter& meter, const vx63::wire::StartRequest& start, uint8_t ucSupplyCode,
                      uint64_t ulSimMs);

// Whether a start can be measured at all: known system, a modulation of that system (0 for any), a
// frequency within the tuner's range, one of the five power supplies.
bool isUsable(const vx63::wire::StartRequest& start);

// Whether what is received is a signal of the kind that was asked for, strong enough to lock to.
bool canLock(const vx63::wire::StartRequest& start, const Reception& reception, double cnDb);

// Lets the demodulator lock or lose lock, as the present moment has it.
void followLock(Meter& meter, const Observation& now);

struct BitErrors {
    uint32_t ulTotal;
    uint32_t ulErrors;
};

// Bits and bit errors since the lock or the last count, and begins a new count. Locked only.
BitErrors countErrors(Meter& meter, const Observation& now);

// The same over a given time that ends at ulSimMs.
BitErrors errorsOver(const Scene& scene, const Observation& seen, double seconds, uint64_t ulSimMs);

} // namespace vmeter

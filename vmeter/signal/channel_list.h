// A list of channels measured in turn: which channel is being measured when, and what each gave.
#pragma once

#include "model/meter.h"
#include "signal/demodulator.h"

#include <cstdint>
#include <optional>

namespace vmeter {

// The time that a channel takes: until it locks and bits have been counted; the whole search where there is
// a signal that does not lock within it; a look where there is none, or where only the level counts.
inline constexpr uint32_t kLookMs = 200;
inline constexpr uint32_t kSearchMs = 1000;
inline constexpr uint32_t kCountMs = 200;

inline bool isList(Run run)
{
    return run == Run::multi || run == Run::scan;
}

// What a channel asks for, as a start of a single measurement would.
vx63::wire::StartRequest startOf(const vx63::wire::Channel& channel);

// Takes a part of a registration. Index 0 begins a new list, on a tuner that is free; any other must follow
// the part before, modulo 256. False: it does not, and nothing has changed.
bool registerPart(State& state, const vx63::wire::MultiMeasRequest& part);

// Begins to measure the registered channels: run is Run::multi, round and round, or Run::scan, once.
void startList(Meter& meter, Run run);

// The channel that is being measured; the last one once a scan is over.
uint8_t currentChannel(const State& state);
bool isScanOver(const State& state);

// The code of the power supply at the present moment: that of the channel while a list is measured.
uint8_t supplyCodeNow(const State& state);

// The latest measurement of a channel; usIndex must be below the count.
struct ChannelResult {
    Observation seen;
    bool locked;
    BitErrors errors;
    uint8_t ucSupplyCode;
};
std::optional<ChannelResult> channelResult(const Meter& meter, uint16_t usIndex); // none: not measured yet

} // namespace vmeter

#include "signal/channel_list.h"

#include <algorithm>
#include <cstring>

namespace vmeter {
namespace {

namespace wire = vx63::wire;

uint8_t supplyOf(const ListState& list, const wire::Channel& channel)
{
    return list.ucSupplied ? supplyCode(channel.ucSupplyLevel, channel.ucSupplyKind) : uint8_t{0};
}

// The time that a channel takes, by what is received on average.
uint32_t dwellMs(const Meter& meter, const wire::Channel& channel)
{
    const wire::StartRequest start = startOf(channel);
    const uint8_t ucInput = meter.state.ucInput;
    const SupplyState supply = supplyState(meter.scene, ucInput, supplyOf(meter.state.list, channel));
    const auto system = static_cast<System>(channel.usBdSys);
    const Reception reception =
        receive(meter.scene, ucInput, supply, intermediateKhz(channel.ulFreq, channel.ulLoFreq), system);
    if (canLock(start, reception, reception.cnDb) && reception.wanted->ulLockMs <= kSearchMs)
        return reception.wanted->ulLockMs + kCountMs;
    return system == System::level || reception.cnDb < 0.0 ? kLookMs : kSearchMs;
}

// Where a list stands at the present moment.
struct Progress {
    uint64_t ulRoundMs; // when the present round began; that of a scan which is over goes on
    uint32_t ulLastMs;  // how long a round takes
    uint64_t ulInMs;    // how long the present one has taken
};

Progress progressOf(const State& state)
{
    const ListState& list = state.list;
    const uint32_t ulLastMs = list.ulEndMs[list.usCount - 1];
    uint64_t ulInMs = state.ulSimMs - list.ulStartMs;
    if (state.run == Run::multi)
        ulInMs %= ulLastMs;
    return {.ulRoundMs = state.ulSimMs - ulInMs, .ulLastMs = ulLastMs, .ulInMs = ulInMs};
}

} // namespace

wire::StartRequest startOf(const wire::Channel& channel)
{
    wire::StartRequest start{};
    start.ucStartStop = wire::kStart;
    start.ulFreq = channel.ulFreq;
    start.ulLoFreq = channel.ulLoFreq;
    start.usBdSys = channel.usBdSys;
    start.usBand = channel.usBand;
    start.usMod = channel.usMod;
    start.usCondition = channel.usCondition;
    std::memcpy(start.ucStrChan, channel.ucStrChan, sizeof start.ucStrChan);
    start.ucOutputEnb = channel.ucOutputEnb;
    start.ucSupplyLevel = channel.ucSupplyLevel;
    start.ucSupplyKind = channel.ucSupplyKind;
    return start;
}

bool registerPart(State& state, const wire::MultiMeasRequest& part)
{
    ListState& list = state.list;
    if (part.ucRegIdx != 0 && (isList(state.run) || list.usCount == 0 || part.ucRegIdx != list.ucNextIdx))
        return false;
    for (unsigned i = 0; i < part.ucRegCount; ++i)
        list.channels[(part.ucRegIdx + i) % kListMax] = part.channels[i];
    const unsigned end = part.ucRegIdx + part.ucRegCount;
    list.usCount = static_cast<uint16_t>(std::clamp<unsigned>(end, list.usCount, kListMax));
    list.ucNextIdx = static_cast<uint8_t>(end % kListMax);
    return true;
}

void startList(Meter& meter, Run run)
{
    State& state = meter.state;
    ListState& list = state.list;
    const std::span channels(list.channels, list.usCount);
    const bool mixed = std::ranges::any_of(
        channels, [&](const wire::Channel& channel) { return channel.usBand != channels[0].usBand; });
    list.ucSupplied = !mixed || state.ucMixBandSupply;
    list.ulStartMs = state.ulSimMs;
    uint32_t ulEndMs = 0;
    for (size_t i = 0; i < channels.size(); ++i) {
        ulEndMs += dwellMs(meter, channels[i]);
        list.ulEndMs[i] = ulEndMs;
    }
    state.run = run;
}

uint8_t currentChannel(const State& state)
{
    const std::span ends(state.list.ulEndMs, state.list.usCount);
    const auto current = std::ranges::upper_bound(ends, progressOf(state).ulInMs);
    return static_cast<uint8_t>(current == ends.end() ? std::ssize(ends) - 1 : current - ends.begin());
}

bool isScanOver(const State& state)
{
    const Progress progress = progressOf(state);
    return progress.ulInMs >= progress.ulLastMs;
}

uint8_t supplyCodeNow(const State& state)
{
    if (!isList(state.run))
        return state.ucSupplyCode;
    return supplyOf(state.list, state.list.channels[currentChannel(state)]);
}

std::optional<ChannelResult> channelResult(const Meter& meter, uint16_t usIndex)
{
    const ListState& list = meter.state.list;
    const Progress progress = progressOf(meter.state);
    uint64_t ulSimMs = progress.ulRoundMs + list.ulEndMs[usIndex];
    if (list.ulEndMs[usIndex] > progress.ulInMs) { // not yet in this round
        if (progress.ulRoundMs == list.ulStartMs)
            return std::nullopt;
        ulSimMs -= progress.ulLastMs;
    }
    const wire::Channel& channel = list.channels[usIndex];
    const wire::StartRequest start = startOf(channel);
    ChannelResult result{};
    result.ucSupplyCode = supplyOf(list, channel);
    result.seen = observeAt(meter, start, result.ucSupplyCode, ulSimMs);
    result.locked = canLock(start, result.seen.reception, result.seen.cnDb) &&
                    result.seen.reception.wanted->ulLockMs <= kSearchMs;
    if (result.locked)
        result.errors = errorsOver(meter.scene, result.seen, kCountMs / 1e3, ulSimMs);
    return result;
}

} // namespace vmeter

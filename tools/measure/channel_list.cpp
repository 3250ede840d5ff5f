#include "measure/channel_list.h"

#include "common/exchange.h"
#include "common/failure.h"
#include "common/interrupt.h"
#include "common/running.h"
#include "common/text.h"
#include "measure/limits.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <optional>
#include <span>

namespace tool {

namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t kMaxRun = 256;
constexpr std::chrono::milliseconds kPollTime{20};
constexpr std::chrono::seconds kStall{30}; // longer than the meter searches on any channel

// MultiMeasReg with its channels behind it.
class Registration {
public:
    explicit Registration(std::span<const ListChannel> channels)
        : m_block((sizeof(MultiMeasReg) + channels.size() * sizeof(MeasCondition)) / sizeof(uint32_t) + 1)
    {
        get()->sRegNum = static_cast<int16_t>(channels.size());
        for (size_t i = 0; i < channels.size(); ++i)
            std::memcpy(&get()->single[i], &channels[i].condition, sizeof(MeasCondition));
    }
    MultiMeasReg* get() { return reinterpret_cast<MultiMeasReg*>(m_block.data()); }

private:
    static_assert(alignof(MultiMeasReg) <= alignof(uint32_t));
    std::vector<uint32_t> m_block;
};

std::string bar(size_t done, size_t all)
{
    constexpr size_t kWidth = 16;
    const size_t full = done * kWidth / all;
    return "[" + std::string(full, '#') + std::string(kWidth - full, '.') + "]";
}

// With one supply for all bands the meter leaves it off unless it is told to change it from channel to
// channel.
bool needsMixBandSupply(const std::vector<ListChannel>& channels)
{
    const auto isFed = [](const ListChannel& channel) {
        return channel.condition.powerSupply != VX63_POWER_SUPPLY_OFF;
    };
    const auto isOther = [&](const ListChannel& channel) {
        return channel.condition.usBand != channels.front().condition.usBand;
    };
    if (!std::ranges::any_of(channels, isFed) || !std::ranges::any_of(channels, isOther))
        return false;
    MeasStatus status{};
    require("cannot read the measurement status", [&] { return vx63_getMeasStatus(&status); });
    return (status.usInputStat & VX63_INPUT_STAT_MIXED_BANDS) == 0;
}

class Run {
public:
    Run(ListKind kind, uint8_t ucDispType, std::span<const ListChannel> channels)
        : m_kind(kind), m_channels(channels), m_registration(channels),
          m_running(startWith(
              "the channels " + channels.front().name + " to " + channels.back().name,
              kind == ListKind::scan ? "the scan" : "the multi-channel measurement",
              [&, ucDispType] {
                  return kind == ListKind::scan ? vx63_startScan(ucDispType, m_registration.get())
                                                : vx63_startMultiMeas(ucDispType, m_registration.get());
              },
              [kind, ucDispType] {
                  return kind == ListKind::scan ? vx63_stopScan(ucDispType) : vx63_stopMultiMeas(ucDispType);
              },
              true))
    {}

    // The result of a channel when it has been measured; nothing after an interruption.
    //   done, all  channels before this run, and of all runs
    std::optional<MultiMeasResult> waitFor(size_t index, size_t done, size_t all, Progress& progress)
    {
        const auto start = Clock::now();
        for (;;) {
            MultiMeasResult result{};
            require(format("cannot read channel %s", m_channels[index].name.c_str()), [&] {
                return m_kind == ListKind::scan
                           ? vx63_getScanResult(static_cast<int32_t>(index), &result)
                           : vx63_getMultiMeasResult(static_cast<int32_t>(index), &result);
            });
            if (interruption() != 0)
                return std::nullopt;
            const ListChannel& current = m_channels[std::min<size_t>(result.currIdx, m_channels.size() - 1)];
            progress.show(format("%s %zu/%zu %-8s %.3f MHz", bar(done + index, all).c_str(), done + index,
                                 all, printable(current.name).c_str(), current.condition.ulFreq / 1000.0));
            if ((result.stat & VX63_STAT_MEASURED) != 0)
                return result;
            if (Clock::now() - start > kStall)
                throw Failure(
                    kExitCommunication, "cannot measure channel " + m_channels[index].name,
                    format("the meter has not done so within %d s", static_cast<int>(kStall.count())),
                    "look at 'vx63 status'");
            tool::waitFor(kPollTime);
        }
    }

    void stop() { m_running.stop(); }

private:
    ListKind m_kind;
    std::span<const ListChannel> m_channels;
    Registration m_registration;
    Running m_running;
};

} // namespace

std::vector<MultiMeasResult> measureList(ListKind kind, uint8_t ucDispType,
                                         const std::vector<ListChannel>& channels, Progress& progress)
{
    std::optional<Running> mixBandSupply;
    if (needsMixBandSupply(channels))
        mixBandSupply.emplace(
            "the supply of several bands", [] { return vx63_setPowerSupplyMultiMeasMixBand(1); },
            [] { return vx63_setPowerSupplyMultiMeasMixBand(0); });
    std::vector<MultiMeasResult> results;
    while (results.size() < channels.size() && interruption() == 0) {
        const size_t done = results.size();
        const size_t count = std::min(kMaxRun, channels.size() - done);
        Run run(kind, ucDispType, std::span(channels).subspan(done, count));
        for (size_t i = 0; i < count; ++i) {
            const auto result = run.waitFor(i, done, channels.size(), progress);
            if (!result)
                break;
            results.push_back(*result);
        }
        run.stop();
    }
    if (mixBandSupply)
        mixBandSupply->stop();
    return results;
}

} // namespace tool

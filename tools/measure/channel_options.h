// The channel on the command line, and the words for the codes in it.
#pragma once

#include "common/identity.h"
#include "libvx63.h"
#include "measure/channel_plan.h"
#include "measure/channel_search.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool {

class CommandLine;
class Option;

// A command that tunes a channel derives its options from these.
struct ChannelOptions {
    int32_t id = kDefaultProcessId;
    std::optional<int32_t> input;
    std::string channel;
    const Plan* plan = nullptr;
    std::optional<uint32_t> ulFreq;
    std::optional<uint16_t> usBand;
    PlanChanges changes;
    MeasCondition condition{};         // resolveChannel() makes it of the others
    std::optional<FoundChannel> found; // and this, where the channel is one of a plan
    uint8_t ucDispType = 0;
    int64_t lockTimeoutMs = 10000;
};

// Declares the options of a channel and, unless nobody waits for lock, --lock-timeout.
void addChannelOptions(CommandLine& line, ChannelOptions& options, bool waitsForLock = true);

// Declares --plan, and --lo, --system, --mod and --supply, which hold in place of it.
Option addPlan(CommandLine& line, const Plan*& plan);
std::vector<Option> addPlanChanges(CommandLine& line, PlanChanges& changes, bool alwaysPlan);

// To be called when the whole command line has been read: makes the condition of the channel, and checks it.
// Throws WrongUsage and Failure.
//   system  in which a channel is looked for that is given without --system
void resolveChannel(ChannelOptions& options, std::optional<uint16_t> system = std::nullopt);

// A code as a number or by its name. Throws WrongUsage that names the option.
uint16_t systemIn(const std::string& option, const std::string& text);
uint16_t modulationIn(const std::string& option, const std::string& text, uint16_t usBdSys);

// Selects the input when one is given. Throws Failure.
void selectInput(const std::optional<int32_t>& input);

} // namespace tool

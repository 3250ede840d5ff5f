// The channel on the command line, and the words for the codes in it.
#pragma once

#include "common/identity.h"
#include "libvx63.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tool {

class CommandLine;

// A command that tunes a channel derives its options from these.
struct ChannelOptions {
    int32_t id = kDefaultProcessId;
    std::optional<int32_t> input;
    MeasCondition condition{};
    std::string modulation; // resolved once the system is known
    uint8_t ucDispType = 0;
    int64_t lockTimeoutMs = 10000;
};

// Declares the options of a channel and --lock-timeout.
void addChannelOptions(CommandLine& line, ChannelOptions& options);

// To be called when the whole command line has been read. Throws WrongUsage.
void resolveModulation(ChannelOptions& options);

// A code as a number or by its name. Throws WrongUsage that names the option.
uint16_t systemIn(const std::string& option, const std::string& text);
uint16_t modulationIn(const std::string& option, const std::string& text, uint16_t usBdSys);

// Selects the input when one is given. Throws Failure.
void selectInput(const std::optional<int32_t>& input);

} // namespace tool

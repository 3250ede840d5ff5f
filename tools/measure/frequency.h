// Frequencies as people type and read them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

// Whole kHz out of "557143", "557143kHz", "557.143 MHz", "1.03648GHz"; without a unit it is kHz and can be
// hexadecimal. Nothing for anything else, a fraction of a kHz and what 32 bits do not hold.
std::optional<uint32_t> parseKhz(std::string_view text);

// The frequency in kHz, not below `lowest`. Throws WrongUsage.
uint32_t khzIn(const std::string& option, const std::string& text, uint32_t lowest);

// Whether they can be of one channel, whose centre depends on its system.
bool isNear(uint32_t aKhz, uint32_t bKhz);

std::string inMhz(uint32_t khz);     // "557.143"
std::string megahertz(uint32_t khz); // "557.143 MHz"

} // namespace tool

// Names of the codes that the services use. The library passes the codes through; the words are those of
// the scene files of vx63-vmeter.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

// What a person reads for either: "code 0x1F" where there is no name.
std::string nameOrCode(std::optional<std::string_view> name, uint32_t code);

// Broadcast system: usBdSys, bdSys. Nothing for an unknown code or name; names in any case.
std::optional<std::string_view> systemName(uint16_t code);
std::optional<uint16_t> systemCode(std::string_view name);
std::string systemNames(); // "terrestrial, satellite, ..."

// Modulation: usMod, MOD. Nothing unless exactly one known modulation is meant.
std::optional<std::string_view> modulationName(uint32_t code);
// 8PSK has one code in the first satellite generation and another everywhere else.
std::optional<uint16_t> modulationCode(std::string_view name, uint16_t systemCode);
std::string modulationNames();

// Guard interval: GI.
std::optional<std::string_view> guardIntervalName(uint8_t code);

// What a power supply selection 0 to 4 feeds into the input.
std::optional<std::string_view> powerSupplyName(uint8_t code);

} // namespace tool

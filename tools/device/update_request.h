// The request for a program update: 32 bytes, the layout of docs/services.md.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

using UpdateRequest = std::array<uint8_t, 32>;

// Codes of programs and of places by name. Nothing for another name.
std::optional<uint8_t> programCode(std::string_view name); // boot, main, sub, qt, product
std::optional<uint8_t> sourceCode(std::string_view name);  // internal, usb1, usb2

// Whether it can stand in a request: 1 to 16 characters of printable ASCII.
bool isVersion(std::string_view version);

//   version  as isVersion() asks for
//   size     of the new program in bytes, not 0
UpdateRequest makeUpdateRequest(uint8_t program, uint8_t source, std::string_view version, uint32_t size);

// The file as it is: exactly 32 bytes. Throws Failure.
UpdateRequest readUpdateRequest(const std::string& path);

} // namespace tool

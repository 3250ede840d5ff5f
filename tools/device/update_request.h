// The request for a program update: 32 bytes, the layout of docs/services.md.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tool {

using UpdateRequest = std::array<uint8_t, 32>;

// Whether it can stand in a request: 1 to 16 characters of printable ASCII.
bool isVersion(std::string_view version);

//   program  1 to 5: boot, main, sub, qt, product
//   source   0 to 2: internal, usb1, usb2
//   version  as isVersion() asks for
//   size     of the new program in bytes, not 0
UpdateRequest makeUpdateRequest(uint8_t program, uint8_t source, std::string_view version, uint32_t size);

// The file as it is: exactly 32 bytes. Throws Failure.
UpdateRequest readUpdateRequest(const std::string& path);

// "the main program to 2.0, 1024 KiB"; empty of a request that cannot be read.
std::string workOf(const UpdateRequest& request);

} // namespace tool

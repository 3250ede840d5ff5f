// Bytes as a test types them, in hex.
#pragma once

#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vx63test {

// "0C 05 03 81" as bytes. "|" and line breaks may separate groups; "*N" repeats the byte before it to N
// in all.
inline std::vector<uint8_t> bytes(std::string_view hex)
{
    std::vector<uint8_t> result;
    for (size_t i = 0; i < hex.size();) {
        if (hex[i] == ' ' || hex[i] == '|' || hex[i] == '\n') {
            ++i;
        } else if (hex[i] == '*') {
            size_t used = 0;
            const int count = std::stoi(std::string(hex.substr(i + 1)), &used);
            result.insert(result.end(), static_cast<size_t>(count) - 1, result.at(result.size() - 1));
            i += used + 1;
        } else {
            size_t used = 0;
            const std::string digits(hex.substr(i, 2));
            const int value = std::stoi(digits, &used, 16);
            if (used != 2) {
                throw std::invalid_argument("not hex: " + digits);
            }
            result.push_back(static_cast<uint8_t>(value));
            i += 2;
        }
    }
    return result;
}

// Values as they are typed above (12 is "0C"), in the order in which they lie in a message.
inline std::string hexByte(unsigned value)
{
    char text[4];
    snprintf(text, sizeof text, "%02X", value & 0xFF);
    return text;
}

inline std::string hex16(unsigned value)
{
    return hexByte(value) + " " + hexByte(value >> 8);
}

inline std::string hex32(unsigned value)
{
    return hex16(value) + " " + hex16(value >> 16);
}

} // namespace vx63test

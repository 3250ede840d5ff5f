// A measurement condition and what becomes of it: the bytes of a start and a stop of one channel, the line
// in the log.
#pragma once

#include "libvx63.h"

#include <cstring>
#include <string>

namespace vx63test {

// A condition whose every byte tells where it went.
inline MeasCondition condition(int32_t powerSupply)
{
    MeasCondition condition = {};
    condition.ulFreq = 557143;     // 00088057
    condition.ulLoFreq = 10678000; // 00A2EEF0
    condition.usBdSys = 0x0102;
    condition.usBand = 0x0304;
    condition.usMod = 0x1400;
    condition.usCondition = 0x00AB;
    memcpy(condition.ucStrChan, "ABCDEFGH", 8);
    condition.ucOutputEnb = 9;
    condition.powerSupply = powerSupply;
    return condition;
}

// Its line in the log.
inline std::string conditionLine(const std::string& function, int32_t powerSupply)
{
    return function +
           ": ulFreq=557143, ulLoFreq=10678000, usBdSys=258, usBand=772, usMod=0x1400, usCondition=0x00AB, "
           "ucStrChan=[ABCDEFGH], ucOutputEnb=9, powerSupply=" +
           std::to_string(powerSupply);
}

// The start with it by this command, for display type 6, with these two bytes of supply.
inline std::string startRequest(const std::string& command, const std::string& supply)
{
    return "05 0C " + command +
           " 28 00 00 00 | 06 00 00 00 01 00 00 00 | 57 80 08 00 F0 EE A2 00 02 01 04 03 00 14 AB 00 |"
           "41 42 43 44 45 46 47 48 | 09 " +
           supply + " 00 00 00 00 00";
}

// The stop by this command, for display type 6.
inline std::string stopRequest(const std::string& command)
{
    return "05 0C " + command + " 28 00 00 00 | 06 00*39";
}

} // namespace vx63test

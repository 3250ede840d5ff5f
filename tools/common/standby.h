// The meter's sleep: ulStandbyStat.
#pragma once

#include "common/json.h"
#include "common/text.h"

#include <array>
#include <cstdint>
#include <string>

namespace tool {

enum Standby : uint32_t { kAwake = 0, kMeterSleeps = 1, kMeasurementSleeps = 2 };

inline constexpr std::array kStandbyWords = {"none", "meter", "measurement"};

inline std::string standbyText(uint32_t state)
{
    return state < kStandbyWords.size() ? kStandbyWords[state] : format("code %u", state);
}

inline Json standbyJson(uint32_t state)
{
    return state < kStandbyWords.size() ? Json(kStandbyWords[state]) : Json();
}

inline std::string wakeUpCommand(uint32_t state)
{
    return state == kMeasurementSleeps ? "'vx63 power wakeup --measurement'" : "'vx63 power wakeup'";
}

} // namespace tool

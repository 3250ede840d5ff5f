// What the meter takes: values outside are refused here, with their range, before they are sent. A code that
// is not known here is left to the meter.
#pragma once

#include "common/running.h"
#include "libvx63.h"
#include "libvx63_settings.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tool {

struct Limits {
    uint32_t lowest;
    uint32_t highest;
};
// ulFreq, less ulLoFreq where there is one
inline constexpr Limits kTunerKhz{vx63::settings::kCableFreqs.lowest, vx63::settings::kCableFreqs.highest};
inline constexpr Limits kOpticalNm{vx63::settings::kWavelengths.lowest, vx63::settings::kWavelengths.highest};

// kHz that arrive at the tuner; 0 where the local oscillator is not below the frequency.
uint32_t tunerKhz(const MeasCondition& condition);

struct Refusal {
    const char* option; // on the command line
    const char* key;    // in a file of conditions
    std::string why;
};

// Why the meter would not take the condition, if so.
std::optional<Refusal> refusalOf(const MeasCondition& condition);

// Starts what `values` are sent to. Throws Failure, which tells them where the meter refuses one that is not
// refused here.
//   inSteps  as of Running
Running startWith(const MeasCondition& values, const std::string& name, const Running::Call& start,
                  Running::Call stop);
Running startWith(const std::string& values, const std::string& name, const Running::Call& start,
                  Running::Call stop, bool inSteps = false);

} // namespace tool

// A reading of a single measurement as text and as JSON.
#pragma once

#include "common/json.h"
#include "libvx63.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tool {

struct Reading {
    int64_t timeMs; // Unix time, milliseconds
    uint32_t ulFreq;
    SingleMeasResult result;
};

// Erroneous bits over bits; nothing as long as no bits are counted.
std::optional<double> bitErrorRate(const SingleMeasResult& result);

// "2.1e-04"; "< 1.0e-06" when none of a million bits is wrong; "-" as long as no bits are counted.
std::string bitErrorRateText(const SingleMeasResult& result);

// One value a line.
std::string readingText(const Reading& reading);

// One line a reading, no more than 40 columns.
std::string readingTableHeader();
std::string readingTableRow(const Reading& reading);

// Numbers in the units that the keys name; null for what is not known.
Json readingJson(const Reading& reading);

} // namespace tool

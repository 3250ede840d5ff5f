// A reading of a channel as text and as JSON.
#pragma once

#include "common/json.h"
#include "common/table.h"
#include "libvx63.h"
#include "measure/judgement.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tool {

struct Reading {
    int64_t timeMs;          // Unix time, milliseconds
    std::string channel;     // empty: it has no name
    MeasCondition condition; // as the meter was told
    MultiMeasResult result;  // what a single measurement delivers as well
    std::optional<uint32_t> input;
    std::optional<uint32_t> supply; // VX63_POWER_SUPPLY_*
    Judgement judgement;
    uint32_t widthKhz = 0; // of the channel; 0: not known
};

// What the meter has selected, by its status: input and supply.
void setSurroundings(Reading& reading, const MeasStatus& status);

// Empty: it has none.
std::string channelNameOf(const MeasCondition& condition);

// Of a level carrier only the level is measured.
bool needsLock(const MeasCondition& condition);

bool hasSignal(const MultiMeasResult& result);

// The values of a single measurement, without its points.
MultiMeasResult valuesOf(const SingleMeasResult& result);

// Erroneous bits over bits; nothing as long as no bits are counted.
std::optional<double> bitErrorRate(const MultiMeasResult& result);

// "2.1e-04"; "< 1.0e-06" when none of a million bits is wrong; "-" as long as no bits are counted.
std::string bitErrorRateText(const MultiMeasResult& result);

// Why the verdict is not pass: "level, no lock", "not recognised"; else nothing.
std::string verdictReasons(const Reading& reading);

// Its name, or null.
Json verdictJson(Verdict verdict);

// "pass", "fail: level, no lock", "not recognised"; "-" where there is none.
Cell verdictCell(const Reading& reading);

// One value a line.
std::string readingText(const Reading& reading);

// One line a reading, no more than 40 columns.
std::string readingTableHeader();
std::string readingTableRow(const Reading& reading);

// Numbers in the units that the keys name; null for what is not known.
Json readingJson(const Reading& reading);

} // namespace tool

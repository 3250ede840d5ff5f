// Which values of a settings file have a meaning.
#pragma once

#include "common/failure.h"
#include "settings/file.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool {

// "4294967295 = none"
std::string wordText(const vx63::settings::Word& word);

// Of the range of a column of numbers: "10000..3224000".
std::string rangeText(const vx63::settings::Column& column);

// Why a value has no meaning: "'9' is outside 0..3 (volume of the buzzer)". Nothing where it has one.
std::optional<std::string> meaningFault(const vx63::settings::Column& column, const uint8_t* record);

// Every value without one: "record 0 VOLUME: '9' is outside 0..3 (volume of the buzzer)".
std::vector<std::string> meaninglessValues(uint32_t fileId, const Contents& contents);

// The first of them, and how many more there are.
std::string listedValues(const std::vector<std::string>& meaningless);

// Throws Failure where there are any.
void requireMeaning(ExitCode code, const std::string& what, const std::vector<std::string>& meaningless,
                    const std::string& hint);

} // namespace tool

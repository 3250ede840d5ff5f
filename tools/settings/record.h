// The values in a record of a settings file, as text and as JSON.
#pragma once

#include "common/json.h"
#include "libvx63_settings.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

// What a column of numbers can hold.
struct Range {
    int64_t lowest;
    int64_t highest;
};
Range rangeOf(const vx63::settings::Column& column);

// Of a column of numbers.
int64_t numberAt(const vx63::settings::Column& column, const uint8_t* record);

// As it stands in the file, but a text without quotes.
std::string cellText(const vx63::settings::Column& column, const uint8_t* record);

// A number, or a text that is safe on a terminal.
Json cellJson(const vx63::settings::Column& column, const uint8_t* record);

// Puts a value into its field. Gives why it does not fit; the record is as it was then.
std::optional<std::string> storeCell(const vx63::settings::Column& column, uint8_t* record,
                                     std::string_view text);

// A column by its name, letters in any case; null where there is none.
const vx63::settings::Column* columnNamed(const vx63::settings::File& file, std::string_view name);

// The names of the columns, separated by commas: the header line of the file.
std::string headerOf(const vx63::settings::File& file);

} // namespace tool

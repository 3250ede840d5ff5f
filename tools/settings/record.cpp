#include "settings/record.h"

#include "common/numbers.h"
#include "common/text.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace tool {

namespace {

uint32_t unsignedAt(const uint8_t* field, uint32_t width)
{
    uint32_t value = 0;
    for (uint32_t i = width; i > 0; --i)
        value = value << 8 | field[i - 1];
    return value;
}

std::optional<int64_t> parseSigned(std::string_view text)
{
    int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace

Range rangeOf(const vx63::settings::Column& column)
{
    if (column.type == vx63::settings::kText)
        return {0, 0};
    const int64_t values = int64_t{1} << (8 * column.width);
    if (column.type == vx63::settings::kSigned)
        return {-values / 2, values / 2 - 1};
    return {0, values - 1};
}

// The only signed fields have 4 bytes.
int64_t numberAt(const vx63::settings::Column& column, const uint8_t* record)
{
    const uint32_t value = unsignedAt(record + column.offset, column.width);
    return column.type == vx63::settings::kSigned ? int64_t{static_cast<int32_t>(value)} : int64_t{value};
}

std::string cellText(const vx63::settings::Column& column, const uint8_t* record)
{
    if (column.type != vx63::settings::kText)
        return std::to_string(numberAt(column, record));
    const auto* text = reinterpret_cast<const char*>(record + column.offset);
    return {text, strnlen(text, column.width)};
}

Json cellJson(const vx63::settings::Column& column, const uint8_t* record)
{
    if (column.type == vx63::settings::kText)
        return printable(cellText(column, record));
    return numberAt(column, record);
}

std::optional<std::string> storeCell(const vx63::settings::Column& column, uint8_t* record,
                                     std::string_view text)
{
    uint8_t* const field = record + column.offset;
    if (column.type == vx63::settings::kText) {
        if (text.size() >= column.width)
            return format("'%.*s' is longer than %u bytes", static_cast<int>(text.size()), text.data(),
                          column.width - 1);
        if (printable(text) != text)
            return format("'%.*s' is not printable", static_cast<int>(text.size()), text.data());
        std::memset(field, 0, column.width);
        std::memcpy(field, text.data(), text.size());
        return std::nullopt;
    }
    const auto [lowest, highest] = rangeOf(column);
    std::optional<int64_t> value = parseSigned(text);
    if (const auto hexadecimal = parseNumber(text); !value && hexadecimal)
        value = static_cast<int64_t>(std::min<uint64_t>(*hexadecimal, INT64_MAX));
    if (!value || *value < lowest || *value > highest)
        return format("'%.*s' is not a whole number from %lld to %lld", static_cast<int>(text.size()),
                      text.data(), static_cast<long long>(lowest), static_cast<long long>(highest));
    for (uint32_t i = 0; i < column.width; ++i)
        field[i] = static_cast<uint8_t>(static_cast<uint64_t>(*value) >> (8 * i));
    return std::nullopt;
}

const vx63::settings::Column* columnNamed(const vx63::settings::File& file, std::string_view name)
{
    for (uint32_t i = 0; i < file.columnCount; ++i)
        if (sameWord(file.columns[i].name, name))
            return &file.columns[i];
    return nullptr;
}

std::string headerOf(const vx63::settings::File& file)
{
    std::string header;
    for (uint32_t i = 0; i < file.columnCount; ++i)
        header.append(i == 0 ? "" : ",").append(file.columns[i].name);
    return header;
}

} // namespace tool

#include "measure/frequency.h"

#include "common/failure.h"
#include "common/numbers.h"
#include "common/text.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace tool {

namespace {

struct Unit {
    std::string_view name;
    size_t decimals; // of it that make whole kHz
};
constexpr Unit kUnits[] = {{"", 0}, {"khz", 0}, {"mhz", 3}, {"ghz", 6}};

constexpr std::string_view kDigits = "0123456789";

size_t afterDigits(std::string_view text, size_t from)
{
    return std::min(text.find_first_not_of(kDigits, from), text.size());
}

} // namespace

// The point is moved in the text, so that nothing is rounded.
std::optional<uint32_t> parseKhz(std::string_view text)
{
    const auto plain = parseNumber(text);
    if (plain && *plain <= UINT32_MAX)
        return static_cast<uint32_t>(*plain);
    const size_t whole = afterDigits(text, 0);
    const bool hasPoint = whole < text.size() && text[whole] == '.';
    const size_t end = hasPoint ? afterDigits(text, whole + 1) : whole;
    std::string_view fraction = hasPoint ? text.substr(whole + 1, end - whole - 1) : "";
    if (whole == 0 || (hasPoint && fraction.empty()))
        return std::nullopt;
    fraction = fraction.substr(0, fraction.find_last_not_of('0') + 1);

    const size_t unitAt = std::min(text.find_first_not_of(' ', end), text.size());
    std::string name(text.substr(unitAt));
    std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::tolower(c); });
    const auto* unit = std::ranges::find(kUnits, std::string_view(name), &Unit::name);
    if (unit == std::end(kUnits) || (name.empty() && unitAt > end) || fraction.size() > unit->decimals)
        return std::nullopt;

    std::string digits(text.substr(0, whole));
    digits.append(fraction).append(unit->decimals - fraction.size(), '0');
    uint32_t khz = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), khz).ec != std::errc())
        return std::nullopt;
    return khz;
}

uint32_t khzIn(const std::string& option, const std::string& text, uint32_t lowest)
{
    const auto khz = parseKhz(text);
    if (!khz || *khz < lowest)
        throw WrongUsage(option,
                         format("'%s' is not a frequency in whole kHz, as 557143, 557143kHz, 557.143MHz "
                                "and 1.03648GHz are",
                                text.c_str()));
    return *khz;
}

bool isNear(uint32_t aKhz, uint32_t bKhz)
{
    constexpr uint32_t kSameKhz = 500;
    return (aKhz > bKhz ? aKhz - bKhz : bKhz - aKhz) <= kSameKhz;
}

std::string inMhz(uint32_t khz)
{
    std::string text = format("%u.%03u", khz / 1000, khz % 1000);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.'))
        text.pop_back();
    return text;
}

std::string megahertz(uint32_t khz)
{
    return inMhz(khz) + " MHz";
}

} // namespace tool

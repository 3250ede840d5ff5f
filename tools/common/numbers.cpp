#include "common/numbers.h"

#include "common/failure.h"
#include "common/text.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace tool {

std::optional<uint64_t> parseNumber(std::string_view text)
{
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        text.remove_prefix(2);
        base = 16;
    }
    uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

uint64_t numberIn(const std::string& option, const std::string& text, uint64_t lowest, uint64_t highest)
{
    const auto value = parseNumber(text);
    if (!value || *value < lowest || *value > highest)
        throw WrongUsage(option, format("'%s' is not a whole number from %llu to %llu", text.c_str(),
                                        static_cast<unsigned long long>(lowest),
                                        static_cast<unsigned long long>(highest)));
    return *value;
}

int64_t secondsIn(const std::string& option, const std::string& text, double lowest, double highest)
{
    double value = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    // Written so that "nan" is refused too.
    if (error != std::errc() || end != text.data() + text.size() || !(value >= lowest && value <= highest))
        throw WrongUsage(
            option, format("'%s' is not a number of seconds from %g to %g", text.c_str(), lowest, highest));
    return std::llround(value * 1000);
}

double rounded(double value, int decimals)
{
    const double scale = std::pow(10, decimals);
    const double scaled = std::round(value * scale);
    return std::isfinite(scaled) ? scaled / scale + 0.0 : value;
}

double significant(double value, int digits)
{
    if (value == 0 || !std::isfinite(value))
        return value;
    char text[32];
    std::snprintf(text, sizeof text, "%.*e", digits - 1, value);
    return std::strtod(text, nullptr);
}

} // namespace tool

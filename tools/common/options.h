// Numbers on the command line.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

// Decimal digits, or 0x and hexadecimal ones; nothing else, so that 010 is ten and -1 is refused.
std::optional<uint64_t> parseNumber(std::string_view text);

// The number, from lowest to highest. Throws CLI::ValidationError that names the option.
uint64_t numberIn(const std::string& option, const std::string& text, uint64_t lowest, uint64_t highest);

// Seconds with or without a fraction, from lowest to highest, as milliseconds. Throws CLI::ValidationError.
int64_t secondsIn(const std::string& option, const std::string& text, double lowest, double highest);

// An option or positional argument for a number.
template <class T>
CLI::Option* addNumber(CLI::App& app, const std::string& name, T& target, const std::string& unit,
                       const std::string& description, uint64_t lowest, uint64_t highest)
{
    return app
        .add_option_function<std::string>(
            name,
            [&target, name, lowest, highest](const std::string& text) {
                using Value = std::remove_cvref_t<decltype(std::optional(target).value())>;
                target = static_cast<Value>(numberIn(name, text, lowest, highest));
            },
            description)
        ->type_name(unit);
}

} // namespace tool

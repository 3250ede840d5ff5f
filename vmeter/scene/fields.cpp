#include "scene/fields.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace vmeter {
namespace {

std::string typeName(const toml::node& node)
{
    std::ostringstream text;
    text << node.type();
    return text.str();
}

std::string plain(double value)
{
    std::ostringstream text;
    text << value;
    return text.str();
}

// Text of the file as an error message can show it: short, on one line.
std::string shown(std::string_view text)
{
    constexpr size_t kShown = 40;
    std::string result(text.substr(0, kShown));
    std::ranges::replace_if(
        result, [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
    return text.size() > kShown ? result + "..." : result;
}

std::string list(std::span<const std::string_view> names)
{
    std::string text;
    for (const std::string_view name : names)
        text.append(text.empty() ? "" : ", ").append(name);
    return text;
}

} // namespace

void failTomlAssertion()
{
    throw TomlAssertion();
}

std::optional<double> numberOf(const toml::node& node)
{
    // node.value<double>() has none for an integer that a double cannot hold exactly.
    if (const auto* integer = node.as_integer())
        return static_cast<double>(integer->get());
    if (const auto* floating = node.as_floating_point())
        return floating->get();
    return std::nullopt;
}

Fields::Fields(const toml::table& table, const std::string& file, std::string name,
               std::span<const std::string_view> keys)
    : table_(table), file_(file), name_(std::move(name))
{
    for (const auto& [key, value] : table_) {
        if (std::ranges::find(keys, key.str()) == keys.end())
            fail(key.str(), "unknown key; known here: " + list(keys));
    }
}

int64_t Fields::integer(std::string_view key, int64_t min, int64_t max, std::optional<int64_t> fallback) const
{
    if (fallback && !has(key))
        return *fallback;
    const auto* value = needed(key).as_integer();
    if (!value)
        fail(key, "must be an integer, not " + typeName(needed(key)));
    if (value->get() < min || value->get() > max) {
        fail(key, "must be " + std::to_string(min) + " to " + std::to_string(max) + ", is " +
                      std::to_string(value->get()));
    }
    return value->get();
}

double Fields::number(std::string_view key, double min, double max, std::optional<double> fallback) const
{
    if (fallback && !has(key))
        return *fallback;
    const std::optional<double> value = numberOf(needed(key));
    if (!value)
        fail(key, "must be a number, not " + typeName(needed(key)));
    if (!(*value >= min && *value <= max)) // nan is out of range too
        fail(key, "must be " + plain(min) + " to " + plain(max) + ", is " + plain(*value));
    return *value;
}

bool Fields::flag(std::string_view key, bool fallback) const
{
    if (!has(key))
        return fallback;
    const auto* value = needed(key).as_boolean();
    if (!value)
        fail(key, "must be true or false, not " + typeName(needed(key)));
    return value->get();
}

std::string Fields::text(std::string_view key, std::optional<std::string> fallback) const
{
    if (fallback && !has(key))
        return *fallback;
    const auto* value = needed(key).as_string();
    if (!value)
        fail(key, "must be a string, not " + typeName(needed(key)));
    return value->get();
}

size_t Fields::choice(std::string_view key, std::span<const std::string_view> choices,
                      std::optional<size_t> fallback) const
{
    if (fallback && !has(key))
        return *fallback;
    const std::string value = text(key);
    const auto found = std::ranges::find(choices, value);
    if (found == choices.end())
        fail(key, "must be one of " + list(choices) + ", not \"" + shown(value) + "\"");
    return static_cast<size_t>(found - choices.begin());
}

const toml::table* Fields::table(std::string_view key) const
{
    const toml::node* found = node(key);
    if (found && !found->is_table())
        fail(key, "must be a table, not " + typeName(*found));
    return found ? found->as_table() : nullptr;
}

std::vector<const toml::table*> Fields::tables(std::string_view key) const
{
    std::vector<const toml::table*> result;
    const toml::node* found = node(key);
    if (!found)
        return result;
    const toml::array* array = found->as_array();
    if (!array || !(array->empty() || array->is_homogeneous(toml::node_type::table)))
        fail(key, "must be tables, each headed [[" + fullName(key) + "]]");
    for (const toml::node& element : *array)
        result.push_back(element.as_table());
    return result;
}

void Fields::fail(std::string_view key, const std::string& reason) const
{
    const toml::node* found = node(key);
    const uint32_t line = (found ? found->source() : table_.source()).begin.line;
    throw std::runtime_error(file_ + ":" + std::to_string(line) + ": " + fullName(key) + ": " + reason);
}

std::string Fields::fullName(std::string_view key) const
{
    return name_.empty() ? shown(key) : name_ + "." + shown(key);
}

const toml::node& Fields::needed(std::string_view key) const
{
    const toml::node* found = node(key);
    if (!found)
        fail(key, "is missing");
    return *found;
}

} // namespace vmeter

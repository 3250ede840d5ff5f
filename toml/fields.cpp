#include "toml/fields.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace tomlfile {
namespace {

struct TomlAssertion {};

[[noreturn]] void failTomlAssertion()
{
    throw TomlAssertion();
}

} // namespace
} // namespace tomlfile

// Its parser guards some of its steps by assertions that a malformed file can reach: "[=" is enough. Left as
// they are, such a file aborts a debug build and is undefined behaviour in any other. Here a failed
// assertion is an exception in every build, for which NDEBUG must be out of sight of the header.
#define TOML_ENABLE_FORMATTERS 0
#define TOML_ASSERT(expr) ((expr) ? void() : ::tomlfile::failTomlAssertion())

#pragma push_macro("NDEBUG")
#undef NDEBUG
#include <toml++/toml.h>
#pragma pop_macro("NDEBUG")

namespace tomlfile {
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

// None for what is neither an integer nor a floating-point number.
std::optional<double> numberOf(const toml::node& node)
{
    // node.value<double>() has none for an integer that a double cannot hold exactly.
    if (const auto* integer = node.as_integer())
        return static_cast<double>(integer->get());
    if (const auto* floating = node.as_floating_point())
        return floating->get();
    return std::nullopt;
}

std::vector<double> numbersOf(const toml::node* node)
{
    std::vector<double> numbers;
    if (const toml::array* array = node ? node->as_array() : nullptr) {
        for (const toml::node& element : *array)
            numbers.push_back(numberOf(element).value_or(NAN));
    }
    return numbers;
}

// The line at which the parser gives up with an assertion, from 1: that of the shortest beginning of the
// text, in whole lines, with which it does.
size_t assertionLine(std::string_view text)
{
    std::vector<size_t> ends;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n')
            ends.push_back(i + 1);
    }
    const auto parses = [text](size_t end) {
        try {
            static_cast<void>(toml::parse(text.substr(0, end)));
        } catch (const toml::parse_error&) {
            // Cut short; the assertion comes later.
        } catch (const TomlAssertion&) {
            return false;
        }
        return true;
    };
    return static_cast<size_t>(std::ranges::partition_point(ends, parses) - ends.begin()) + 1;
}

toml::table parseToml(std::string_view text, const std::string& name)
{
    const auto refuse = [&name](size_t line, const std::string& reason) {
        throw Mistake(name + ":" + std::to_string(line) + ": syntax: " + reason);
    };
    try {
        return toml::parse(text, name);
    } catch (const toml::parse_error& error) {
        refuse(error.source().begin.line, std::string(error.description()));
    } catch (const TomlAssertion&) {
        refuse(assertionLine(text), "no key, value or table header");
    }
    return {};
}

} // namespace

struct Fields::Source {
    std::string file;
    std::string name;                         // of the table, "" for the file itself
    std::shared_ptr<const toml::table> whole; // of which it is a part
    const toml::table& table;

    const toml::node* find(std::string_view key) const { return table.get(key); }

    const toml::node& needed(std::string_view key) const
    {
        if (const toml::node* node = find(key))
            return *node;
        fail(key, "is missing");
    }

    std::string fullName(std::string_view key) const
    {
        return name.empty() ? shown(key) : name + "." + shown(key);
    }

    [[noreturn]] void fail(std::string_view key, const std::string& reason) const
    {
        const toml::node* found = find(key);
        failAt(found ? found->source() : table.source(), fullName(key), reason);
    }

    [[noreturn]] void failAt(const toml::source_region& place, const std::string& what,
                             const std::string& reason) const
    {
        throw Mistake(file + ":" + std::to_string(place.begin.line) + ": " + what + ": " + reason);
    }

    Fields inner(std::string_view key, const toml::node& node) const
    {
        const std::string innerName = name.empty() ? std::string(key) : name + "." + std::string(key);
        return Fields(std::shared_ptr<const Source>(new Source{file, innerName, whole, *node.as_table()}));
    }
};

Fields::Fields(std::shared_ptr<const Source> source) : source_(std::move(source)) {}

Fields::Fields(std::string_view text, const std::string& file)
{
    const auto table = std::make_shared<const toml::table>(parseToml(text, file));
    source_ = std::shared_ptr<const Source>(new Source{file, "", table, *table});
}

void Fields::allow(std::span<const std::string_view> keys) const
{
    for (const auto& [key, value] : source_->table) {
        if (std::ranges::find(keys, key.str()) == keys.end())
            fail(key.str(), "unknown key; known here: " + list(keys));
    }
}

bool Fields::has(std::string_view key) const
{
    return source_->find(key) != nullptr;
}

bool Fields::isInteger(std::string_view key) const
{
    return has(key) && source_->find(key)->is_integer();
}

int64_t Fields::integer(std::string_view key, int64_t min, int64_t max, std::optional<int64_t> fallback) const
{
    if (fallback && !has(key))
        return *fallback;
    const auto* value = source_->needed(key).as_integer();
    if (!value)
        fail(key, "must be an integer, not " + typeName(source_->needed(key)));
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
    const std::optional<double> value = numberOf(source_->needed(key));
    if (!value)
        fail(key, "must be a number, not " + typeName(source_->needed(key)));
    if (!(*value >= min && *value <= max)) // nan is out of range too
        fail(key, "must be " + plain(min) + " to " + plain(max) + ", is " + plain(*value));
    return *value;
}

bool Fields::flag(std::string_view key, bool fallback) const
{
    if (!has(key))
        return fallback;
    const auto* value = source_->needed(key).as_boolean();
    if (!value)
        fail(key, "must be true or false, not " + typeName(source_->needed(key)));
    return value->get();
}

std::string Fields::text(std::string_view key, std::optional<std::string> fallback) const
{
    if (fallback && !has(key))
        return *fallback;
    const auto* value = source_->needed(key).as_string();
    if (!value)
        fail(key, "must be a string, not " + typeName(source_->needed(key)));
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

std::vector<std::string> Fields::texts(std::string_view key) const
{
    std::vector<std::string> result;
    const toml::node* found = source_->find(key);
    if (!found)
        return result;
    const toml::array* array = found->as_array();
    if (!array || !(array->empty() || array->is_homogeneous(toml::node_type::string)))
        fail(key, "must be an array of strings");
    for (const toml::node& element : *array)
        result.push_back(element.as_string()->get());
    return result;
}

std::vector<double> Fields::numbers(std::string_view key) const
{
    return numbersOf(source_->find(key));
}

std::vector<std::vector<double>> Fields::numberLists(std::string_view key) const
{
    std::vector<std::vector<double>> lists;
    const toml::node* found = source_->find(key);
    if (const toml::array* array = found ? found->as_array() : nullptr) {
        for (const toml::node& element : *array)
            lists.push_back(numbersOf(&element));
    }
    return lists;
}

std::optional<Fields> Fields::table(std::string_view key) const
{
    const toml::node* found = source_->find(key);
    if (!found)
        return std::nullopt;
    if (!found->is_table())
        fail(key, "must be a table, not " + typeName(*found));
    return source_->inner(key, *found);
}

std::vector<Fields> Fields::tables(std::string_view key) const
{
    std::vector<Fields> result;
    const toml::node* found = source_->find(key);
    if (!found)
        return result;
    const toml::array* array = found->as_array();
    if (!array || !(array->empty() || array->is_homogeneous(toml::node_type::table)))
        fail(key, "must be tables, each headed [[" + source_->fullName(key) + "]]");
    for (const toml::node& element : *array)
        result.push_back(source_->inner(key, element));
    return result;
}

void Fields::fail(std::string_view key, const std::string& reason) const
{
    source_->fail(key, reason);
}

void Fields::fail(const std::string& reason) const
{
    source_->failAt(source_->table.source(), source_->name, reason);
}

} // namespace tomlfile

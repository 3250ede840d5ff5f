// One table of a scene file, read key by key with checks.
#pragma once

#include "scene/toml.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vmeter {

// The value of an integer or floating-point node; none for any other.
std::optional<double> numberOf(const toml::node& node);

// Every failure throws std::runtime_error "FILE:LINE: KEY: reason". A key without a fallback must be there.
class Fields {
public:
    // name: of the table, "" for the file itself; keys: all that it may have. Throws on any other.
    Fields(const toml::table& table, const std::string& file, std::string name,
           std::span<const std::string_view> keys);

    bool has(std::string_view key) const { return table_.contains(key); }
    int64_t integer(std::string_view key, int64_t min, int64_t max,
                    std::optional<int64_t> fallback = {}) const;
    double number(std::string_view key, double min, double max, std::optional<double> fallback = {}) const;
    bool flag(std::string_view key, bool fallback) const;
    std::string text(std::string_view key, std::optional<std::string> fallback = {}) const;

    // Text that must be one of the choices; returns its index.
    size_t choice(std::string_view key, std::span<const std::string_view> choices,
                  std::optional<size_t> fallback = {}) const;

    const toml::node* node(std::string_view key) const { return table_.get(key); }
    const toml::table* table(std::string_view key) const;               // null: not there
    std::vector<const toml::table*> tables(std::string_view key) const; // of [[key]], none: not there

    // The line is that of the key, or of the table when the key is not there.
    [[noreturn]] void fail(std::string_view key, const std::string& reason) const;

private:
    std::string fullName(std::string_view key) const;
    const toml::node& needed(std::string_view key) const;

    const toml::table& table_;
    const std::string& file_;
    std::string name_;
};

} // namespace vmeter

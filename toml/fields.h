// One table of a TOML file, read key by key with checks. toml++ stays behind it: its header costs more to
// compile than all that reads such a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tomlfile {

// What is wrong with a file: "FILE:LINE: KEY: reason".
struct Mistake : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Every failure throws Mistake. A key without a fallback must be there.
class Fields {
public:
    // The file itself; KEY is "syntax" where it is no TOML.
    Fields(std::string_view text, const std::string& file);

    // Fails on a key that is none of these.
    void allow(std::span<const std::string_view> keys) const;

    bool has(std::string_view key) const;
    bool isInteger(std::string_view key) const;
    int64_t integer(std::string_view key, int64_t min, int64_t max,
                    std::optional<int64_t> fallback = {}) const;
    double number(std::string_view key, double min, double max, std::optional<double> fallback = {}) const;
    bool flag(std::string_view key, bool fallback) const;
    std::string text(std::string_view key, std::optional<std::string> fallback = {}) const;

    // Text that must be one of the choices; returns its index.
    size_t choice(std::string_view key, std::span<const std::string_view> choices,
                  std::optional<size_t> fallback = {}) const;

    // The texts of an array; none where it is not there.
    std::vector<std::string> texts(std::string_view key) const;

    // The numbers of an array, NAN for what is none; empty where there is no array. Lists: of an array of
    // arrays.
    std::vector<double> numbers(std::string_view key) const;
    std::vector<std::vector<double>> numberLists(std::string_view key) const;

    std::optional<Fields> table(std::string_view key) const; // none: not there
    std::vector<Fields> tables(std::string_view key) const;  // of [[key]], none: not there

    // The line is that of the key, or of the table when the key is not there.
    [[noreturn]] void fail(std::string_view key, const std::string& reason) const;

    // KEY is the table's own.
    [[noreturn]] void fail(const std::string& reason) const;

private:
    struct Source; // where the table stands
    explicit Fields(std::shared_ptr<const Source> source);

    std::shared_ptr<const Source> source_;
};

} // namespace tomlfile

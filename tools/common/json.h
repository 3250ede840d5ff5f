// What a command prints with --json. nlohmann-json does the work behind this header alone, since whatever
// includes it takes five times as long to compile.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

// A JSON value; the members of an object stay in the order in which they were added.
class Json {
public:
    struct Member;

    Json(std::nullptr_t = nullptr);
    Json(std::initializer_list<Member> members); // an object: {{"key", value}, ...}
    Json(const char* text);
    Json(std::string_view text);
    Json(const std::string& text) : Json(std::string_view(text)) {}
    template <std::same_as<bool> T>
    Json(T truth) : Json(Truth{truth})
    {}
    template <std::signed_integral T>
    Json(T number) : Json(Signed{number})
    {}
    template <std::unsigned_integral T>
    requires(!std::same_as<T, bool>) Json(T number) : Json(Unsigned{number}) {}
    template <std::floating_point T>
    Json(T number) : Json(Real{number})
    {}
    // null where there is no value
    template <class T>
    Json(const std::optional<T>& value) : Json(value ? Json(*value) : Json(nullptr))
    {}
    Json(const Json& other);
    Json(Json&& other) noexcept;
    Json& operator=(Json other) noexcept;
    ~Json();

    // [value, value, ...]
    static Json array(std::initializer_list<Json> values = {});
    template <class Range>
    static Json arrayOf(const Range& values)
    {
        Json result = array();
        for (const auto& value : values)
            result.push(value);
        return result;
    }

    void push(const Json& value);                        // to an array
    void set(const std::string& key, const Json& value); // of an object
    void add(const Json& object);                        // all its members
    std::string
    line() const; // on one line, with the newline; bytes that are no UTF-8 as U+FFFD, no control characters

    // Of an object, by RFC 4180: its keys; its values, null as nothing, texts as of printable(), arrays and
    // objects as JSON.
    std::string csvHeader() const;
    std::string csvLine() const;

private:
    struct Truth {
        bool value;
    };
    struct Signed {
        int64_t value;
    };
    struct Unsigned {
        uint64_t value;
    };
    struct Real {
        double value;
    };
    explicit Json(Truth truth);
    explicit Json(Signed number);
    explicit Json(Unsigned number);
    explicit Json(Real number);

    std::unique_ptr<nlohmann::ordered_json> m_json;
};

struct Json::Member {
    std::string key;
    Json value;
};

} // namespace tool

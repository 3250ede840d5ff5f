#include "common/json.h"

#include "common/text.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace tool {

using Value = nlohmann::ordered_json;

namespace {

// The control characters that JSON need not escape, U+007F to U+009F, are escaped too: a terminal obeys them.
std::string dump(const Value& value)
{
    const std::string text = value.dump(-1, ' ', false, Value::error_handler_t::replace);
    std::string safe;
    safe.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte == 0x7F)
            safe += "\\u007f";
        else if (byte == 0xC2 && static_cast<unsigned char>(text[i + 1]) < 0xA0)
            safe += format("\\u%04x", static_cast<unsigned char>(text[++i]));
        else
            safe += text[i];
    }
    return safe;
}

std::string csvField(const std::string& text)
{
    if (text.find_first_of(",\"") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

std::string csvField(const Value& value)
{
    return value.is_null()     ? std::string()
           : value.is_string() ? csvField(printable(value.get<std::string>()))
                               : csvField(dump(value));
}

} // namespace

Json::Json(std::nullptr_t) : m_json(std::make_unique<Value>(nullptr)) {}
Json::Json(const char* text) : Json(std::string_view(text)) {}
Json::Json(std::string_view text) : m_json(std::make_unique<Value>(text)) {}
Json::Json(Truth truth) : m_json(std::make_unique<Value>(truth.value)) {}
Json::Json(Signed number) : m_json(std::make_unique<Value>(number.value)) {}
Json::Json(Unsigned number) : m_json(std::make_unique<Value>(number.value)) {}
Json::Json(Real number) : m_json(std::make_unique<Value>(number.value)) {}

Json::Json(std::initializer_list<Member> members) : m_json(std::make_unique<Value>(Value::object()))
{
    for (const Member& member : members)
        set(member.key, member.value);
}

Json::Json(const Json& other) : m_json(std::make_unique<Value>(*other.m_json)) {}
Json::Json(Json&& other) noexcept = default;
Json::~Json() = default;

Json& Json::operator=(Json other) noexcept
{
    m_json = std::move(other.m_json);
    return *this;
}

Json Json::array(std::initializer_list<Json> values)
{
    Json result;
    *result.m_json = Value::array();
    for (const Json& value : values)
        result.push(value);
    return result;
}

void Json::push(const Json& value)
{
    m_json->push_back(*value.m_json);
}

void Json::set(const std::string& key, const Json& value)
{
    (*m_json)[key] = *value.m_json;
}

void Json::add(const Json& object)
{
    m_json->update(*object.m_json);
}

std::string Json::line() const
{
    return dump(*m_json) + "\n";
}

std::string Json::csvHeader() const
{
    std::string line;
    for (const auto& [key, value] : m_json->items())
        line += (line.empty() ? "" : ",") + csvField(key);
    return line + "\n";
}

std::string Json::csvLine() const
{
    std::string line;
    for (auto value = m_json->begin(); value != m_json->end(); ++value)
        line += (value == m_json->begin() ? "" : ",") + csvField(*value);
    return line + "\n";
}

} // namespace tool

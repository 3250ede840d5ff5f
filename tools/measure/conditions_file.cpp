#include "measure/conditions_file.h"

#include "common/failure.h"
#include "common/file.h"
#include "common/names.h"
#include "common/text.h"
#include "measure/limits.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

namespace tool {

namespace {

using nlohmann::json;

constexpr size_t kMaxFile = 1 << 20;

[[noreturn]] void refuse(const std::string& path, const std::string& why, const std::string& hint)
{
    throw Failure(kExitNoInput, "cannot read the conditions in " + path, why, hint);
}

std::string contentsOf(const std::string& path)
{
    std::string contents =
        readWholeFile(path, kMaxFile + 1, "cannot read the conditions in " + path, "check the name");
    if (contents.size() > kMaxFile)
        refuse(path, "it is larger than 1 MiB", "check the name");
    return contents;
}

// The keys of one object.
class Reader {
public:
    Reader(const std::string& path, size_t index, const json& object)
        : m_path(path), m_place(format("[%zu]", index)), m_object(object)
    {
        if (!object.is_object())
            refuse(path, m_place + ": must be an object", "see vx63-measure(1), CONDITIONS");
        for (const auto& [key, value] : object.items())
            if (std::ranges::find(kKeys, key) == std::end(kKeys))
                fail(key, "is no key");
    }

    template <class T>
    void number(const char* key, T& target, int64_t lowest, int64_t highest) const
    {
        const auto found = m_object.find(key);
        if (found == m_object.end())
            return;
        // An unsigned number beyond int64_t would come out negative: none that large is in range.
        const bool fits = found->is_number_unsigned()
                              ? found->get<uint64_t>() <= static_cast<uint64_t>(highest)
                              : found->is_number_integer() && found->get<int64_t>() <= highest;
        if (!fits || found->get<int64_t>() < lowest)
            fail(key, format("must be a whole number from %lld to %lld", static_cast<long long>(lowest),
                             static_cast<long long>(highest)));
        target = static_cast<T>(found->get<int64_t>());
    }

    std::string text(const char* key) const
    {
        const auto found = m_object.find(key);
        if (found == m_object.end())
            return "";
        if (!found->is_string())
            fail(key, "must be a text");
        return found->get<std::string>();
    }

    // By its name, or as a number.
    template <class Find>
    void code(const char* key, uint16_t& target, Find find, const std::string& names) const
    {
        const auto found = m_object.find(key);
        if (found == m_object.end())
            return;
        if (!found->is_string()) {
            number(key, target, 0, UINT16_MAX);
            return;
        }
        const std::optional<uint16_t> named = find(found->get<std::string>());
        if (!named)
            fail(key, "is none of " + names);
        target = *named;
    }

    bool has(const char* key) const { return m_object.contains(key); }

    [[noreturn]] void fail(const std::string& key, const std::string& why) const
    {
        refuse(m_path, m_place + "." + key + ": " + why, "see vx63-measure(1), CONDITIONS");
    }

private:
    static constexpr std::string_view kKeys[] = {"channel",    "frequency_khz", "lo_khz", "system", "band",
                                                 "modulation", "condition",     "supply", "output"};

    const std::string& m_path;
    std::string m_place;
    const json& m_object;
};

ListChannel readChannel(const std::string& path, size_t index, const json& object)
{
    const Reader reader(path, index, object);
    ListChannel channel{reader.text("channel"), {}, index};
    MeasCondition& condition = channel.condition;
    if (!reader.has("frequency_khz"))
        reader.fail("frequency_khz", "is missing");
    reader.number("frequency_khz", condition.ulFreq, 1, UINT32_MAX);
    reader.number("lo_khz", condition.ulLoFreq, 0, UINT32_MAX);
    reader.code("system", condition.usBdSys, systemCode, systemNames());
    reader.number("band", condition.usBand, 0, UINT16_MAX);
    reader.code(
        "modulation", condition.usMod,
        [&](std::string_view name) { return modulationCode(name, condition.usBdSys); }, modulationNames());
    reader.number("condition", condition.usCondition, 0, UINT16_MAX);
    reader.number("supply", condition.powerSupply, 0, 4);
    reader.number("output", condition.ucOutputEnb, 0, UINT8_MAX);
    if (channel.name.size() > sizeof condition.ucStrChan)
        reader.fail("channel", format("is longer than %zu bytes", sizeof condition.ucStrChan));
    std::memcpy(condition.ucStrChan, channel.name.data(), channel.name.size());
    if (const auto refusal = refusalOf(condition))
        reader.fail(refusal->key, refusal->why);
    if (channel.name.empty())
        channel.name = format("%zu", index + 1);
    return channel;
}

} // namespace

std::vector<ListChannel> readConditions(const std::string& path)
{
    const std::string contents = contentsOf(path);
    json list;
    try {
        list = json::parse(contents);
    } catch (const json::parse_error& error) {
        refuse(path, format("byte %zu is not what JSON has there", error.byte),
               "see vx63-measure(1), CONDITIONS");
    } catch (const json::out_of_range&) {
        refuse(path, "it holds a number that is too large", "see vx63-measure(1), CONDITIONS");
    }
    if (!list.is_array() || list.empty())
        refuse(path, "must be an array of at least one channel", "see vx63-measure(1), CONDITIONS");
    std::vector<ListChannel> channels;
    for (size_t i = 0; i < list.size(); ++i)
        channels.push_back(readChannel(path, i, list[i]));
    return channels;
}

} // namespace tool

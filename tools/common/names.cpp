#include "common/names.h"

#include "libvx63.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace tool {

namespace {

struct Name {
    uint32_t code;
    std::string_view text;
};

constexpr uint16_t kSatellite = 1;
constexpr uint16_t kPsk8 = 16; // first satellite generation
constexpr uint16_t kPsk8Later = 32;

constexpr Name kSystems[] = {
    {0, "terrestrial"},
    {kSatellite, "satellite"},
    {2, "satellite-2"},
    {3, "catv"},
    {4, "jsat"},
    {5, "jsat-2"},
    {6, "skyp"},
    {9, "catv-2"},
    {kSystemLevel, "level"},
};

constexpr Name kModulations[] = {
    {1, "OFDM"},    {2, "BPSK"},     {8, "QPSK"},     {kPsk8, "8PSK"},  {kPsk8Later, "8PSK"},
    {64, "16APSK"}, {128, "32APSK"}, {1024, "64QAM"}, {4096, "256QAM"}, {8192, "none"},
};

constexpr Name kGuardIntervals[] = {{0, "1/32"}, {1, "1/16"}, {2, "1/8"}, {3, "1/4"}};

constexpr Name kPowerSupplies[] = {
    {VX63_POWER_SUPPLY_OFF, "off"}, {1, "11 V"}, {2, "15 V"}, {3, "11 V, tone"}, {4, "15 V, tone"}};

bool sameWord(std::string_view a, std::string_view b)
{
    return std::ranges::equal(
        a, b, [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

template <size_t N>
std::optional<std::string_view> nameOf(const Name (&names)[N], uint32_t code)
{
    const auto* found = std::ranges::find(names, code, &Name::code);
    if (found == std::end(names))
        return std::nullopt;
    return found->text;
}

template <size_t N>
std::optional<uint16_t> codeOf(const Name (&names)[N], std::string_view text)
{
    const auto* found =
        std::ranges::find_if(names, [&](const Name& name) { return sameWord(name.text, text); });
    if (found == std::end(names))
        return std::nullopt;
    return static_cast<uint16_t>(found->code);
}

template <size_t N>
std::string listOf(const Name (&names)[N])
{
    std::string list;
    std::string_view previous;
    for (const Name& name : names) {
        if (name.text == previous)
            continue;
        if (!list.empty())
            list += ", ";
        list += previous = name.text;
    }
    return list;
}

} // namespace

std::optional<std::string_view> systemName(uint16_t code)
{
    return nameOf(kSystems, code);
}

std::optional<uint16_t> systemCode(std::string_view name)
{
    return codeOf(kSystems, name);
}

std::string systemNames()
{
    return listOf(kSystems);
}

std::optional<std::string_view> modulationName(uint32_t code)
{
    return nameOf(kModulations, code);
}

std::optional<uint16_t> modulationCode(std::string_view name, uint16_t systemCode)
{
    const auto code = codeOf(kModulations, name);
    return code == kPsk8 && systemCode != kSatellite ? kPsk8Later : code;
}

std::string modulationNames()
{
    return listOf(kModulations);
}

std::optional<std::string_view> guardIntervalName(uint8_t code)
{
    return nameOf(kGuardIntervals, code);
}

std::optional<std::string_view> powerSupplyName(uint8_t code)
{
    return nameOf(kPowerSupplies, code);
}

} // namespace tool

#include "common/names.h"

#include "common/text.h"
#include "libvx63.h"
#include "libvx63_settings.h"

#include <algorithm>
#include <iterator>

namespace tool {

namespace {

using vx63::settings::Word;

constexpr Word kModulations[] = {
    {VX63_MOD_OFDM, "OFDM"},           {VX63_MOD_BPSK, "BPSK"},   {VX63_MOD_QPSK, "QPSK"},
    {VX63_MOD_8PSK_SATELLITE, "8PSK"}, {VX63_MOD_8PSK, "8PSK"},   {VX63_MOD_16APSK, "16APSK"},
    {VX63_MOD_32APSK, "32APSK"},       {VX63_MOD_64QAM, "64QAM"}, {VX63_MOD_256QAM, "256QAM"},
    {VX63_MOD_NONE, "none"},
};

constexpr Word kGuardIntervals[] = {
    {VX63_GI_1_32, "1/32"}, {VX63_GI_1_16, "1/16"}, {VX63_GI_1_8, "1/8"}, {VX63_GI_1_4, "1/4"}};

template <size_t N>
std::optional<std::string_view> nameOf(const Word (&names)[N], uint32_t code)
{
    const auto* found = std::ranges::find(names, code, &Word::value);
    if (found == std::end(names))
        return std::nullopt;
    return found->text;
}

template <size_t N>
std::optional<uint16_t> codeOf(const Word (&names)[N], std::string_view text)
{
    const auto* found =
        std::ranges::find_if(names, [&](const Word& name) { return sameWord(name.text, text); });
    if (found == std::end(names))
        return std::nullopt;
    return static_cast<uint16_t>(found->value);
}

template <size_t N>
std::string listOf(const Word (&names)[N])
{
    std::string list;
    std::string_view previous;
    for (const Word& name : names) {
        if (name.text == previous)
            continue;
        if (!list.empty())
            list += ", ";
        list += previous = name.text;
    }
    return list;
}

} // namespace

std::string nameOrCode(std::optional<std::string_view> name, uint32_t code)
{
    return name ? std::string(*name) : format("code 0x%X", code);
}

std::optional<std::string_view> systemName(uint16_t code)
{
    return nameOf(vx63::settings::kSystemWords, code);
}

std::optional<uint16_t> systemCode(std::string_view name)
{
    return codeOf(vx63::settings::kSystemWords, name);
}

std::string systemNames()
{
    return listOf(vx63::settings::kSystemWords);
}

std::optional<std::string_view> modulationName(uint32_t code)
{
    return nameOf(kModulations, code);
}

std::optional<uint16_t> modulationCode(std::string_view name, uint16_t systemCode)
{
    const auto code = codeOf(kModulations, name);
    return code == VX63_MOD_8PSK_SATELLITE && systemCode != VX63_BDSYS_SATELLITE ? VX63_MOD_8PSK : code;
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
    return nameOf(vx63::settings::kSupplyWords, code);
}

} // namespace tool

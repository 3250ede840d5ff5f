#include "measure/channel_options.h"

#include "common/command_line.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/names.h"
#include "common/numbers.h"
#include "common/text.h"

#include <cstring>

namespace tool {

namespace {

uint16_t codeIn(const std::string& option, const std::string& text, std::optional<uint16_t> named,
                const std::string& names)
{
    if (named)
        return *named;
    if (const auto value = parseNumber(text); value && *value <= UINT16_MAX)
        return static_cast<uint16_t>(*value);
    throw WrongUsage(option, format("'%s' is none of %s, nor a code from 0 to %u", text.c_str(),
                                    names.c_str(), unsigned{UINT16_MAX}));
}

} // namespace

uint16_t systemIn(const std::string& option, const std::string& text)
{
    return codeIn(option, text, systemCode(text), systemNames());
}

uint16_t modulationIn(const std::string& option, const std::string& text, uint16_t usBdSys)
{
    return codeIn(option, text, modulationCode(text, usBdSys), modulationNames());
}

void addChannelOptions(CommandLine& line, ChannelOptions& options)
{
    MeasCondition& condition = options.condition;
    line.number("--freq", condition.ulFreq, "KHZ", "Frequency to tune, in kHz", 1, UINT32_MAX).required();
    line.number("--lo", condition.ulLoFreq, "KHZ",
                "Local-oscillator frequency of a converter, in kHz [0: none]", 0, UINT32_MAX);
    line.value("--system", "SYSTEM", "Broadcast system: " + systemNames() + ", or its code [terrestrial]",
               [&condition](const std::string& text) { condition.usBdSys = systemIn("--system", text); })
        .offers(systemNames());
    line.number("--band", condition.usBand, "N",
                "Band: 1 UHF, 2 BS, 3 CS, ...; see vx63-measure(1) [0: none]", 0, UINT16_MAX);
    line.text("--mod", options.modulation, "MOD",
              "Modulation: " + modulationNames() + ", or its code [0: whatever the system has]")
        .offers(modulationNames());
    line.number("--condition", condition.usCondition, "BITS",
                "Condition bits, e.g. 0x0001; come back as condition_code [0]", 0, UINT16_MAX);
    line.value("--channel", "NAME", "Channel name, up to 8 bytes", [&condition](const std::string& text) {
        if (text.size() > sizeof condition.ucStrChan)
            throw WrongUsage("--channel", format("'%s' is longer than %zu bytes", text.c_str(),
                                                 sizeof condition.ucStrChan));
        std::memcpy(condition.ucStrChan, text.data(), text.size());
    });
    line.number("--supply", condition.powerSupply, "0..4",
                "Antenna power supply: 0 off, 1 11 V, 2 15 V, 3 11 V and tone, 4 15 V and tone [0]", 0, 4);
    line.number("--input", options.input, "0|1", "Select this RF input first [leave it]", 0, 1);
    line.number("--disp-type", options.ucDispType, "N",
                "Number of a display type, handed on to the meter [0]", 0, UINT8_MAX);
    line.seconds("--lock-timeout", options.lockTimeoutMs, "How long to wait for lock, in seconds [10]", 0,
                 3600);
}

void resolveModulation(ChannelOptions& options)
{
    if (!options.modulation.empty())
        options.condition.usMod = modulationIn("--mod", options.modulation, options.condition.usBdSys);
}

void selectInput(const std::optional<int32_t>& input)
{
    if (input)
        require(format("cannot select input %d", *input), [&] { return vx63_setMeasInput(*input); });
}

} // namespace tool

#include "measure/channel_options.h"

#include "common/exchange.h"
#include "common/names.h"
#include "common/options.h"
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
    throw CLI::ValidationError(option, format("'%s' is none of %s, nor a code from 0 to %u", text.c_str(),
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

void addChannelOptions(CLI::App& app, ChannelOptions& options)
{
    MeasCondition& condition = options.condition;
    addNumber(app, "--freq", condition.ulFreq, "KHZ", "Frequency to tune, in kHz", 1, UINT32_MAX)->required();
    addNumber(app, "--lo", condition.ulLoFreq, "KHZ",
              "Local-oscillator frequency of a converter, in kHz [0: none]", 0, UINT32_MAX);
    app.add_option_function<std::string>(
           "--system",
           [&condition](const std::string& text) { condition.usBdSys = systemIn("--system", text); },
           "Broadcast system: " + systemNames() + ", or its code [terrestrial]")
        ->type_name("SYSTEM");
    addNumber(app, "--band", condition.usBand, "N", "Band code [0]", 0, UINT16_MAX);
    app.add_option("--mod", options.modulation,
                   "Modulation: " + modulationNames() + ", or its code [0: whatever the system has]")
        ->type_name("MOD");
    addNumber(app, "--condition", condition.usCondition, "BITS", "Condition bits, e.g. 0x0001 [0]", 0,
              UINT16_MAX);
    app.add_option_function<std::string>(
           "--channel",
           [&condition](const std::string& text) {
               if (text.size() > sizeof condition.ucStrChan)
                   throw CLI::ValidationError("--channel", format("'%s' is longer than %zu bytes",
                                                                  text.c_str(), sizeof condition.ucStrChan));
               std::memcpy(condition.ucStrChan, text.data(), text.size());
           },
           "Channel name, up to 8 bytes")
        ->type_name("NAME");
    addNumber(app, "--supply", condition.powerSupply, "0..4",
              "Antenna power supply: 0 off, 1 11 V, 2 15 V, 3 11 V and tone, 4 15 V and tone [0]", 0, 4);
    addNumber(app, "--input", options.input, "0|1", "Select this RF input first [leave it]", 0, 1);
    addNumber(app, "--disp-type", options.ucDispType, "N", "Display type [0]", 0, UINT8_MAX);
    app.add_option_function<std::string>(
           "--lock-timeout",
           [&options](const std::string& text) {
               options.lockTimeoutMs = secondsIn("--lock-timeout", text, 0, 3600);
           },
           "How long to wait for lock, in seconds [10]")
        ->type_name("S");
    addIdOption(app, options.id);
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

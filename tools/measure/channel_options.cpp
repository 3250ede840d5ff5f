#include "measure/channel_options.h"

#include "common/command_line.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/names.h"
#include "common/numbers.h"
#include "common/text.h"
#include "measure/frequency.h"
#include "measure/limits.h"

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

Option addPlan(CommandLine& line, const Plan*& plan)
{
    return line
        .value("--plan", "NAME", "Channel plan: " + planNames(),
               [&plan](const std::string& text) { plan = planIn("--plan", text); })
        .offers(planNames());
}

std::vector<Option> addPlanChanges(CommandLine& line, PlanChanges& changes, bool alwaysPlan)
{
    const auto otherwise = [alwaysPlan](const char* value) {
        return std::string(" [that of the plan") + (alwaysPlan ? "" : std::string(", or ") + value) + "]";
    };
    return {
        line.value("--lo", "FREQ", "Local oscillator of a converter, as --freq; 0: none" + otherwise("0"),
                   [&changes](const std::string& text) { changes.ulLoFreq = khzIn("--lo", text, 0); }),
        line.value("--system", "SYSTEM",
                   "Broadcast system: " + systemNames() + ", or its code" + otherwise("terrestrial"),
                   [&changes](const std::string& text) { changes.usBdSys = systemIn("--system", text); })
            .offers(systemNames()),
        line.value("--mod", "MOD",
                   "Modulation: " + modulationNames() + ", or its code [0: whatever the system has]",
                   [&changes](const std::string& text) {
                       modulationIn("--mod", text, VX63_BDSYS_TERRESTRIAL);
                       changes.modulation = text;
                   })
            .offers(modulationNames()),
        line.number("--supply", changes.powerSupply, "0..4",
                    "Antenna power supply: 0 off, 1 11 V, 2 15 V, 3 11 V and tone, 4 15 V and tone" +
                        otherwise("0"),
                    0, 4),
    };
}

void addChannelOptions(CommandLine& line, ChannelOptions& options, bool waitsForLock)
{
    const Option channel = line.text(
        "--channel", options.channel, "NAME",
        "Channel of a plan, which tells the rest, see 'vx63 channels'; beside --freq a name, up to 8 bytes");
    addPlan(line, options.plan).needs(channel);
    line.value(
        "--freq", "FREQ",
        "Frequency to tune: kHz, or with a unit, as 557.143MHz; with --lo that in the sky, without that on "
        "the cable [that of the plan]",
        [&options](const std::string& text) { options.ulFreq = khzIn("--freq", text, 1); });
    addPlanChanges(line, options.changes, false);
    line.number("--band", options.usBand, "N",
                "Band: 1 UHF, 2 BS, 3 CS, ...; see vx63-measure(1) [that of the plan, or 0]", 0, UINT16_MAX);
    line.number("--condition", options.condition.usCondition, "BITS",
                "Condition bits, e.g. 0x0001; come back as condition_code [0]", 0, UINT16_MAX);
    line.number("--input", options.input, "0|1", "Select this RF input first [leave it]", 0, 1);
    line.number("--disp-type", options.ucDispType, "N",
                "Number of a display type, handed on to the meter [0]", 0, UINT8_MAX);
    if (waitsForLock)
        line.seconds("--lock-timeout", options.lockTimeoutMs, "How long to wait for lock, in seconds [10]", 0,
                     3600);
}

void resolveChannel(ChannelOptions& options, std::optional<uint16_t> system)
{
    const PlanChanges& changes = options.changes;
    MeasCondition& condition = options.condition;
    if (options.channel.empty() && !options.ulFreq) // an empty name is none
        throw WrongUsage("say what to measure: --channel or --freq");
    if (!options.ulFreq || options.plan != nullptr) {
        const uint16_t usCondition = condition.usCondition;
        options.found =
            findChannel(options.channel, options.plan, changes, changes.usBdSys ? changes.usBdSys : system);
        condition = options.found->condition;
        condition.usCondition = usCondition;
    } else {
        if (options.channel.size() > sizeof condition.ucStrChan)
            throw WrongUsage("--channel", format("'%s' is longer than %zu bytes", options.channel.c_str(),
                                                 sizeof condition.ucStrChan));
        condition.ulLoFreq = changes.ulLoFreq.value_or(0);
        condition.usBdSys = changes.usBdSys.value_or(VX63_BDSYS_TERRESTRIAL);
        if (!changes.modulation.empty())
            condition.usMod = modulationIn("--mod", changes.modulation, condition.usBdSys);
        condition.powerSupply = changes.powerSupply.value_or(VX63_POWER_SUPPLY_OFF);
        std::memcpy(condition.ucStrChan, options.channel.data(), options.channel.size());
    }
    condition.usBand = options.usBand.value_or(condition.usBand);
    condition.ulFreq = options.ulFreq.value_or(condition.ulFreq);
    if (options.ulFreq && !options.channel.empty())
        refuseOtherChannel(options.channel, options.plan, condition);
    if (const auto refusal = refusalOf(condition))
        throw WrongUsage(refusal->option, refusal->why);
}

void selectInput(const std::optional<int32_t>& input)
{
    if (input)
        require(format("cannot select input %d", *input), [&] { return vx63_setMeasInput(*input); });
}

} // namespace tool

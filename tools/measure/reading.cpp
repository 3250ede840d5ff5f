#include "measure/reading.h"

#include "common/clock.h"
#include "common/names.h"
#include "common/numbers.h"
#include "common/table.h"
#include "common/text.h"

#include <cstring>
#include <string_view>

namespace tool {

namespace {

// What a demodulator without lock says of the signal means nothing.
bool isLocked(const MultiMeasResult& result)
{
    return result.lock != 0;
}

// Only OFDM signals have one.
bool hasGuardInterval(const MultiMeasResult& result)
{
    return isLocked(result) && result.MOD == VX63_MOD_OFDM;
}

std::string supplyText(uint32_t code)
{
    return nameOrCode(powerSupplyName(static_cast<uint8_t>(code)), code);
}

} // namespace

void setSurroundings(Reading& reading, const MeasStatus& status)
{
    const auto has = [&](unsigned bit) { return (status.usInputStat & bit) != 0; };
    reading.input = has(VX63_INPUT_STAT_1) ? VX63_INPUT_1 : VX63_INPUT_0;
    if (!has(VX63_INPUT_STAT_SUPPLY))
        reading.supply = VX63_POWER_SUPPLY_OFF;
    else if (has(VX63_INPUT_STAT_TONE))
        reading.supply = has(VX63_INPUT_STAT_15V) ? VX63_POWER_SUPPLY_15V_TONE : VX63_POWER_SUPPLY_11V_TONE;
    else
        reading.supply = has(VX63_INPUT_STAT_15V) ? VX63_POWER_SUPPLY_15V : VX63_POWER_SUPPLY_11V;
}

std::string channelNameOf(const MeasCondition& condition)
{
    const auto* name = reinterpret_cast<const char*>(condition.ucStrChan);
    return {name, strnlen(name, sizeof condition.ucStrChan)};
}

bool needsLock(const MeasCondition& condition)
{
    return condition.usBdSys != VX63_BDSYS_LEVEL;
}

bool hasSignal(const MultiMeasResult& result)
{
    return (result.stat & VX63_STAT_SIGNAL) != 0;
}

MultiMeasResult valuesOf(const SingleMeasResult& result)
{
    MultiMeasResult values{};
    values.lock = result.lock;
    values.stat = result.stat;
    values.mesCond = result.mesCond;
    values.bdSys = result.bdSys;
    values.LEVEL = result.LEVEL;
    values.CNR = result.CNR;
    values.BER_TOTAL = result.BER_TOTAL;
    values.BER_ERR = result.BER_ERR;
    values.TSID = result.TSID;
    values.GI = result.GI;
    values.LAYER = result.LAYER;
    values.MOD = result.MOD;
    return values;
}

std::optional<double> bitErrorRate(const MultiMeasResult& result)
{
    if (result.BER_TOTAL == 0)
        return std::nullopt;
    return static_cast<double>(result.BER_ERR) / result.BER_TOTAL;
}

std::string bitErrorRateText(const MultiMeasResult& result)
{
    const auto rate = bitErrorRate(result);
    if (!rate)
        return "-";
    return result.BER_ERR == 0 ? format("< %.1e", 1.0 / result.BER_TOTAL) : format("%.1e", *rate);
}

std::string verdictReasons(const Reading& reading)
{
    const Judgement& judgement = reading.judgement;
    if (judgement.unrecognised)
        return "not recognised";
    std::string why;
    const auto add = [&](bool because, const char* what) {
        if (because)
            why += (why.empty() ? "" : ", ") + std::string(what);
    };
    if (judgement.whole == Verdict::pass || judgement.whole == Verdict::none)
        return why;
    add(judgement.level == judgement.whole, "level");
    add(judgement.cnr == judgement.whole, "C/N");
    add(judgement.mer == judgement.whole, "MER");
    add(judgement.ber == judgement.whole, "BER");
    add(!isLocked(reading.result) && needsLock(reading.condition), "no lock");
    return why;
}

Cell verdictCell(const Reading& reading)
{
    const Judgement& judgement = reading.judgement;
    const char* name = verdictName(judgement.whole);
    const std::string why = verdictReasons(reading);
    if (judgement.unrecognised)
        return {why, judgement.whole == Verdict::fail ? Tint::bad : Tint::doubtful};
    if (name == nullptr)
        return "-";
    if (why.empty())
        return {name, Tint::good};
    return {name + (": " + why), judgement.whole == Verdict::fail ? Tint::bad : Tint::doubtful};
}

Json verdictJson(Verdict verdict)
{
    const char* name = verdictName(verdict);
    return name ? Json(name) : Json();
}

std::string readingText(const Reading& reading)
{
    const MultiMeasResult& result = reading.result;
    const bool locked = isLocked(result);
    const auto ifLocked = [locked](const std::string& value) { return locked ? value : std::string("-"); };
    Rows rows = {
        {"Frequency", format("%u kHz", reading.condition.ulFreq)},
        {"Input", reading.input ? format("%u", *reading.input) : "-"},
        {"Supply", reading.supply ? supplyText(*reading.supply) : "-"},
        {"System", nameOrCode(systemName(result.bdSys), result.bdSys)},
        {"Lock", locked                         ? "yes"
                 : needsLock(reading.condition) ? "no"
                                                : "-"},
        {"Level", tenths(result.LEVEL) + " dBuV"},
        {"C/N", tenths(result.CNR) + " dB"},
        {"Bit error rate", bitErrorRateText(result)},
        {"Errors/bits", format("%u/%u", result.BER_ERR, result.BER_TOTAL)},
        {"Modulation", ifLocked(nameOrCode(modulationName(result.MOD), result.MOD))},
        {"Guard interval",
         hasGuardInterval(result) ? nameOrCode(guardIntervalName(result.GI), result.GI) : "-"},
        {"TSID", ifLocked(format("0x%04X", result.TSID))},
        {"Layer", ifLocked(format("%u", result.LAYER))},
        {"Verdict", verdictCell(reading)},
    };
    if (!reading.channel.empty())
        rows.insert(rows.begin(), {"Channel", reading.channel});
    return aligned(rows);
}

std::string readingTableHeader()
{
    return format("%-8s %6s %6s %10s %4s\n", "Time", "dBuV", "C/N dB", "BER", "Lock");
}

std::string readingTableRow(const Reading& reading)
{
    const tm local = localTime(reading.timeMs / 1000);
    return format("%02d:%02d:%02d %6s %6s %10s %4s\n", local.tm_hour, local.tm_min, local.tm_sec,
                  tenths(reading.result.LEVEL).c_str(), tenths(reading.result.CNR).c_str(),
                  bitErrorRateText(reading.result).c_str(), isLocked(reading.result) ? "yes" : "no");
}

Json readingJson(const Reading& reading)
{
    const MultiMeasResult& result = reading.result;
    const bool locked = isLocked(result);
    const auto ifLocked = [locked](const Json& value) { return locked ? value : Json(); };
    const auto rate = bitErrorRate(result);
    return {
        {"time", static_cast<double>(reading.timeMs) / 1000},
        {"channel", reading.channel.empty() ? Json() : Json(reading.channel)},
        {"frequency_khz", reading.condition.ulFreq},
        {"lo_khz", reading.condition.ulLoFreq},
        {"input", reading.input},
        {"power_supply", reading.supply},
        {"signal", hasSignal(result)},
        {"locked", locked},
        {"unrecognised", reading.judgement.unrecognised},
        {"level_dbuv", rounded(result.LEVEL / 10.0, 1)},
        {"cnr_db", rounded(result.CNR / 10.0, 1)},
        {"ber", rate ? Json(significant(*rate, 4)) : Json()},
        {"ber_errors", result.BER_ERR},
        {"ber_bits", result.BER_TOTAL},
        {"system", systemName(result.bdSys)},
        {"modulation", ifLocked(modulationName(result.MOD))},
        {"guard_interval", hasGuardInterval(result) ? Json(guardIntervalName(result.GI)) : Json()},
        {"tsid", ifLocked(result.TSID)},
        {"layer", ifLocked(result.LAYER)},
        {"verdict", verdictJson(reading.judgement.whole)},
        {"level_verdict", verdictJson(reading.judgement.level)},
        {"cnr_verdict", verdictJson(reading.judgement.cnr)},
        {"ber_verdict", verdictJson(reading.judgement.ber)},
        {"lock_code", result.lock},
        {"status_code", result.stat},
        {"condition_code", result.mesCond},
        {"system_code", result.bdSys},
        {"modulation_code", result.MOD},
        {"guard_interval_code", result.GI},
    };
}

} // namespace tool

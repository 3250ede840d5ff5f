#include "measure/reading.h"

#include "common/names.h"
#include "common/text.h"

#include <ctime>
#include <string_view>

namespace tool {

namespace {

constexpr uint32_t kOfdm = 1;

// What a demodulator without lock says of the signal means nothing.
bool isLocked(const SingleMeasResult& result)
{
    return result.lock != 0;
}

// Only OFDM signals have one.
bool hasGuardInterval(const SingleMeasResult& result)
{
    return isLocked(result) && result.MOD == kOfdm;
}

std::string nameOrCode(std::optional<std::string_view> name, uint32_t code)
{
    return name ? std::string(*name) : format("code 0x%X", code);
}

} // namespace

std::optional<double> bitErrorRate(const SingleMeasResult& result)
{
    if (result.BER_TOTAL == 0)
        return std::nullopt;
    return static_cast<double>(result.BER_ERR) / result.BER_TOTAL;
}

std::string bitErrorRateText(const SingleMeasResult& result)
{
    const auto rate = bitErrorRate(result);
    if (!rate)
        return "-";
    return result.BER_ERR == 0 ? format("< %.1e", 1.0 / result.BER_TOTAL) : format("%.1e", *rate);
}

std::string readingText(const Reading& reading)
{
    const SingleMeasResult& result = reading.result;
    const bool locked = isLocked(result);
    const auto ifLocked = [locked](const std::string& value) { return locked ? value : std::string("-"); };
    return aligned({
        {"Frequency", format("%u kHz", reading.ulFreq)},
        {"System", nameOrCode(systemName(result.bdSys), result.bdSys)},
        {"Lock", locked ? "yes" : "no"},
        {"Level", tenths(result.LEVEL) + " dBuV"},
        {"C/N", tenths(result.CNR) + " dB"},
        {"Bit error rate", bitErrorRateText(result)},
        {"Errors/bits", format("%u/%u", result.BER_ERR, result.BER_TOTAL)},
        {"Modulation", ifLocked(nameOrCode(modulationName(result.MOD), result.MOD))},
        {"Guard interval",
         hasGuardInterval(result) ? nameOrCode(guardIntervalName(result.GI), result.GI) : "-"},
        {"TSID", ifLocked(format("0x%04X", result.TSID))},
        {"Layer", ifLocked(format("%u", result.LAYER))},
    });
}

std::string readingTableHeader()
{
    return format("%-8s %6s %6s %10s %4s\n", "Time", "dBuV", "C/N dB", "BER", "Lock");
}

std::string readingTableRow(const Reading& reading)
{
    const time_t seconds = static_cast<time_t>(reading.timeMs / 1000);
    struct tm local {};
    localtime_r(&seconds, &local);
    return format("%02d:%02d:%02d %6s %6s %10s %4s\n", local.tm_hour, local.tm_min, local.tm_sec,
                  tenths(reading.result.LEVEL).c_str(), tenths(reading.result.CNR).c_str(),
                  bitErrorRateText(reading.result).c_str(), isLocked(reading.result) ? "yes" : "no");
}

Json readingJson(const Reading& reading)
{
    const SingleMeasResult& result = reading.result;
    const bool locked = isLocked(result);
    const auto ifLocked = [locked](const Json& value) { return locked ? value : Json(); };
    return {
        {"time", static_cast<double>(reading.timeMs) / 1000},
        {"frequency_khz", reading.ulFreq},
        {"locked", locked},
        {"level_dbuv", result.LEVEL / 10.0},
        {"cnr_db", result.CNR / 10.0},
        {"ber", bitErrorRate(result)},
        {"ber_errors", result.BER_ERR},
        {"ber_bits", result.BER_TOTAL},
        {"system", systemName(result.bdSys)},
        {"modulation", ifLocked(modulationName(result.MOD))},
        {"guard_interval", hasGuardInterval(result) ? Json(guardIntervalName(result.GI)) : Json()},
        {"tsid", ifLocked(result.TSID)},
        {"layer", ifLocked(result.LAYER)},
        {"lock_code", result.lock},
        {"status_code", result.stat},
        {"condition_code", result.mesCond},
        {"system_code", result.bdSys},
        {"modulation_code", result.MOD},
        {"guard_interval_code", result.GI},
    };
}

} // namespace tool

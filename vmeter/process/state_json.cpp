#include "process/state_json.h"

#include "cli/printable.h"
#include "services/keys.h"
#include "services/power.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <span>
#include <stdexcept>

namespace vmeter {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kDepthMax = 8;

// A text of a fixed field, which it may fill; what is no printable ASCII becomes '?'.
std::string textOf(std::span<const char> field)
{
    std::string text(field.begin(), std::find(field.begin(), field.end(), '\0'));
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c > '~'; }, '?');
    return text;
}

std::string hexOf(std::span<const uint8_t> bytes)
{
    std::string text;
    for (const uint8_t byte : bytes) {
        char digits[sizeof "ff"];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(byte));
        text += digits;
    }
    return text;
}

std::string_view powerOf(const DeviceState& device, uint64_t nowMs)
{
    if (device.ucOff)
        return "off";
    if (nowMs < device.ulRebootEndMs)
        return "rebooting";
    return device.standby == Standby::none ? "on" : "standby";
}

Json productJson(const DeviceState& device)
{
    return {{"model_code", textOf(device.product.cModelCode)},
            {"option_info", textOf(device.product.cOptInfo)},
            {"serial_no", textOf(device.product.cSerialNo)},
            {"boot_version", textOf(device.product.cBootPrgVer)},
            {"main_version", textOf(device.product.cMainPrgVer)},
            {"sub_version", textOf(device.product.cSubPrgVer)},
            {"qt_version", textOf(device.product.cQtVer)},
            {"product_version", textOf(device.product.cProductVer)}};
}

Json failureJson(const DeviceState& device)
{
    return {{"code", device.failure.usCode},
            {"state", device.failure.ucStat},
            {"control", device.failure.ucCtl},
            {"wait", device.failure.usWait},
            {"info", hexOf(device.failure.ucAddInfo)}};
}

Json powerJson(const DeviceState& device, uint64_t nowMs)
{
    return {{"state", powerOf(device, nowMs)},
            {"standby", static_cast<unsigned>(device.standby)},
            {"reboots", device.ulReboots},
            {"low_battery", device.ucLowBattery != 0},
            {"developer_mode", device.ucDeveloperMode != 0},
            {"factory_resets", device.ulFactoryResets},
            {"calibrations", device.ulCalibrations},
            {"calibration_mode", device.ucCalibrationMode}};
}

Json buzzerJson(const BuzzerState& buzzer, uint64_t ulSimMs)
{
    const bool sounds = buzzer.ucSounding && (buzzer.ucRepeating || ulSimMs < buzzer.ulUntilMs);
    Json json = {{"sounding", sounds}};
    json["kind"] = sounds ? Json(buzzer.ucKind) : Json(nullptr);
    json["repeating"] = sounds && buzzer.ucRepeating;
    json["sounds"] = buzzer.ulSounds;
    json["volumes"] = buzzer.ucVolumes;
    return json;
}

Json updateJson(const UpdateState& update)
{
    return {{"running", update.ucRunning != 0}, {"step", update.ulStep}, {"finished", update.ulFinished}};
}

Json noticeJson(const NoticeState& notice)
{
    Json json = {{"notices", notice.ulCount}};
    const bool any = notice.ulCount != 0;
    json["file"] = any ? Json(notice.lFileId) : Json(nullptr);
    json["record"] = any && notice.lRecord >= 0 ? Json(notice.lRecord) : Json(nullptr);
    json["read"] = any ? Json(notice.ucRead != 0) : Json(nullptr);
    return json;
}

std::string_view runName(Run run)
{
    switch (run) {
    case Run::none:
        break;
    case Run::single:
        return "single";
    case Run::delayProfile:
        return "delay-profile";
    case Run::multi:
        return "multi";
    case Run::scan:
        return "scan";
    }
    return "none";
}

Json measurementJson(const State& state)
{
    return {{"input", state.ucInput},
            {"supply", state.ucSupplyCode},
            {"mix_band_supply", state.ucMixBandSupply != 0},
            {"run", runName(state.run)},
            {"locked", state.run != Run::none && state.demodulator.ucLocked != 0},
            {"optical_nm", state.ulOpticalNm},
            {"dc", state.ucDcRunning != 0},
            {"angle", state.angle.ucOn != 0}};
}

} // namespace

std::string stateJson(const Scene& scene, const State& state, uint64_t nowMs)
{
    const DeviceState& device = state.device;
    Json json = {{"sim_ms", state.ulSimMs}};
    json["power"] = powerJson(device, nowMs);
    json["product"] = productJson(device);
    json["failure"] = failureJson(device);
    json["keys"] = keyStates(scene.device, state.ulSimMs).stat;
    json["display"] = {{"brightness", device.ucBrightness}};
    json["buzzer"] = buzzerJson(device.buzzer, state.ulSimMs);
    json["update"] = updateJson(device.update);
    json["settings"] = noticeJson(device.notice);
    json["measurement"] = measurementJson(state);
    return json.dump() + "\n";
}

std::string stateText(const std::string& json)
{
    // Whoever answers may say anything: no deeper than a state is, and nothing that a terminal obeys.
    const auto isShallow = [](int depth, Json::parse_event_t, Json&) {
        if (depth > kDepthMax)
            throw std::runtime_error("no state");
        return true;
    };
    const Json state = Json::parse(json, isShallow, false);
    if (!state.is_object())
        throw std::runtime_error("no state");
    std::string text;
    const auto put = [&text](const std::string& name, const Json& value) {
        constexpr std::size_t kNameWidth = 28;
        const std::string shown = cli::printable(name);
        text += shown + std::string(shown.size() < kNameWidth ? kNameWidth - shown.size() : 1, ' ');
        text += value.is_null() ? "-"
                                : cli::printable(value.is_string() ? value.get<std::string>() : value.dump());
        text += '\n';
    };
    for (const auto& [name, value] : state.items()) {
        if (!value.is_object())
            put(name, value);
        else
            for (const auto& [inner, one] : value.items())
                put(name + "." + inner, one);
    }
    return text;
}

} // namespace vmeter

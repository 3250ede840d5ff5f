// Reads what a scene tells of the meter itself.
#pragma once

#include "model/device_scene.h"
#include "toml/fields.h"

#include <string_view>

namespace vmeter {

using tomlfile::Fields;

inline constexpr std::string_view kProductKeys[] = {"model_code",   "option_info",    "serial_no",
                                                    "boot_version", "main_version",   "sub_version",
                                                    "qt_version",   "product_version"};
inline constexpr std::string_view kFailureKeys[] = {"code", "state", "control", "wait", "info"};
inline constexpr std::string_view kDeviceKeys[] = {
    "battery_percent", "battery_mv",    "low_battery",   "external_power",
    "charging",        "temperature_c", "usb1",          "usb2",
    "brightness",      "volume",        "developer_mode"};
inline constexpr std::string_view kPowerKeys[] = {"standby", "reboot_ms"};
inline constexpr std::string_view kUpdateKeys[] = {"steps", "fail_step"};
inline constexpr std::string_view kKeyKeys[] = {"time_ms", "key", "duration_ms"};

// `top` is the scene itself. Throws as Fields does.
DeviceScene readDeviceScene(const Fields& top);

} // namespace vmeter

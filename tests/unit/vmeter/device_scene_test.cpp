// What a scene tells of the meter itself: what is read, what is refused and how that is said.
#include "scene/load.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace vmeter {
namespace {

std::string refusal(const std::string& text)
{
    try {
        parseScene(text, "x.toml");
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "accepted";
}

TEST(DeviceScene, ReadsEveryKey)
{
    const DeviceScene scene = parseScene(R"(
[product]
model_code = "12345678"
option_info = "12345"
serial_no = "123456789012"
boot_version = "b234567890123456"
main_version = "m234567890123456"
sub_version = "s234567890123456"
qt_version = "q234567890123456"
product_version = ""
[failure]
code = 65535
state = 1
control = 255
wait = 65535
info = "00fF"
[device]
battery_percent = 100
battery_mv = 65535
low_battery = true
external_power = true
charging = "full"
temperature_c = 100
usb1 = true
usb2 = true
brightness = 2
volume = 3
developer_mode = true
[power]
standby = "measurement"
reboot_ms = 600000
[update]
steps = 100000
fail_step = 100001
[[key]]
time_ms = 0
key = 16
duration_ms = 1
[[key]]
time_ms = 1000000000000
key = 0
duration_ms = 1000000000000
)",
                                         "x.toml")
                                  .device;
    EXPECT_EQ(scene.product.modelCode, "12345678");
    EXPECT_EQ(scene.product.optionInfo, "12345");
    EXPECT_EQ(scene.product.serialNo, "123456789012");
    EXPECT_EQ(scene.product.bootVersion, "b234567890123456");
    EXPECT_EQ(scene.product.mainVersion, "m234567890123456");
    EXPECT_EQ(scene.product.subVersion, "s234567890123456");
    EXPECT_EQ(scene.product.qtVersion, "q234567890123456");
    EXPECT_EQ(scene.product.productVersion, "");
    EXPECT_EQ(scene.failure.usCode, 65535);
    EXPECT_EQ(scene.failure.ucState, 1);
    EXPECT_EQ(scene.failure.ucControl, 255);
    EXPECT_EQ(scene.failure.usWait, 65535);
    EXPECT_EQ(scene.failure.info, (std::vector<uint8_t>{0, 255}));
    EXPECT_EQ(scene.condition.ucBatteryPercent, 100);
    EXPECT_EQ(scene.condition.usBatteryMv, 65535);
    EXPECT_TRUE(scene.condition.lowBattery);
    EXPECT_TRUE(scene.condition.externalPower);
    EXPECT_EQ(scene.condition.charging, Charging::full);
    EXPECT_EQ(scene.condition.ucTemperatureC, 100);
    EXPECT_TRUE(scene.condition.usb1);
    EXPECT_TRUE(scene.condition.usb2);
    EXPECT_EQ(scene.condition.ucBrightness, 2);
    EXPECT_EQ(scene.condition.ucVolume, 3);
    EXPECT_TRUE(scene.condition.developerMode);
    EXPECT_EQ(scene.power.standby, Standby::measurement);
    EXPECT_EQ(scene.power.ulRebootMs, 600000u);
    EXPECT_EQ(scene.update.ulSteps, 100000u);
    EXPECT_EQ(scene.update.ulFailStep, 100001u);
    ASSERT_EQ(scene.keyPresses.size(), 2u);
    EXPECT_EQ(scene.keyPresses[0].ucKey, 16);
    EXPECT_EQ(scene.keyPresses[0].ulDurationMs, 1u);
    EXPECT_EQ(scene.keyPresses[1].ulTimeMs, 1'000'000'000'000u);
}

TEST(DeviceScene, DefaultsAreThoseOfTheDocument)
{
    const DeviceScene scene =
        parseScene("[product]\n[failure]\n[device]\n[power]\n[update]\n", "x.toml").device;
    EXPECT_EQ(scene.product.modelCode, "VX63");
    EXPECT_EQ(scene.product.serialNo, "VX6300000001");
    EXPECT_EQ(scene.product.qtVersion, "5.15.2");
    EXPECT_EQ(scene.failure.usCode, 0);
    EXPECT_EQ(scene.condition.ucBatteryPercent, 80);
    EXPECT_EQ(scene.condition.usBatteryMv, 7400);
    EXPECT_EQ(scene.condition.charging, Charging::no);
    EXPECT_EQ(scene.condition.ucTemperatureC, 30);
    EXPECT_EQ(scene.condition.ucBrightness, 1);
    EXPECT_EQ(scene.condition.ucVolume, 0);
    EXPECT_EQ(scene.power.standby, Standby::none);
    EXPECT_EQ(scene.power.ulRebootMs, 2000u);
    EXPECT_EQ(scene.update.ulSteps, 5u);
    EXPECT_EQ(scene.update.ulFailStep, 0u);
    EXPECT_TRUE(scene.keyPresses.empty());
}

TEST(DeviceScene, RefusesWithFileLineKeyAndReason)
{
    const std::pair<std::string, std::string> cases[] = {
        {"[product]\nmodel = \"x\"",
         "x.toml:2: product.model: unknown key; known here: model_code, option_info, "
         "serial_no, boot_version, main_version, sub_version, qt_version, "
         "product_version"},
        {"[product]\nmodel_code = \"123456789\"",
         "x.toml:2: product.model_code: must be at most 8 printable ASCII characters"},
        {"[product]\noption_info = \"123456\"",
         "x.toml:2: product.option_info: must be at most 5 printable ASCII characters"},
        {"[product]\nserial_no = \"\\u00e4\"",
         "x.toml:2: product.serial_no: must be at most 12 printable ASCII characters"},
        {"[product]\nqt_version = \"a\\nb\"",
         "x.toml:2: product.qt_version: must be at most 16 printable ASCII characters"},
        {"product = 1", "x.toml:1: product: must be a table, not integer"},
        {"[failure]\ncode = 65536", "x.toml:2: failure.code: must be 0 to 65535, is 65536"},
        {"[failure]\nstate = 2", "x.toml:2: failure.state: must be 0 to 1, is 2"},
        {"[failure]\ninfo = \"0\"",
         "x.toml:2: failure.info: must be at most 32 bytes, two hexadecimal digits each"},
        {"[failure]\ninfo = \"0g\"",
         "x.toml:2: failure.info: must be at most 32 bytes, two hexadecimal digits each"},
        {"[failure]\ninfo = \"" + std::string(66, '0') + "\"",
         "x.toml:2: failure.info: must be at most 32 bytes, two hexadecimal digits each"},
        {"[device]\nbattery_percent = 101", "x.toml:2: device.battery_percent: must be 0 to 100, is 101"},
        {"[device]\nbrightness = 3", "x.toml:2: device.brightness: must be 0 to 2, is 3"},
        {"[device]\nvolume = 4", "x.toml:2: device.volume: must be 0 to 3, is 4"},
        {"[device]\nusb1 = 1", "x.toml:2: device.usb1: must be true or false, not integer"},
        {"[device]\ncharging = \"full\"", "x.toml:2: device.charging: needs external_power = true beside it"},
        {"[power]\nstandby = \"on\"",
         "x.toml:2: power.standby: must be one of none, meter, measurement, not \"on\""},
        {"[power]\nreboot_ms = 600001", "x.toml:2: power.reboot_ms: must be 0 to 600000, is 600001"},
        {"[update]\nsteps = -1", "x.toml:2: update.steps: must be 0 to 100000, is -1"},
        {"[update]\nsteps = 2\nfail_step = 4", "x.toml:3: update.fail_step: must be 0 to 3, is 4"},
        {"[[key]]\ntime_ms = 0\nkey = 17\nduration_ms = 1", "x.toml:3: key.key: must be 0 to 16, is 17"},
        {"[[key]]\ntime_ms = 0\nkey = 1\nduration_ms = 0",
         "x.toml:4: key.duration_ms: must be 1 to 1000000000000, is 0"},
        {"[[key]]\nkey = 1\nduration_ms = 1", "x.toml:1: key.time_ms: is missing"},
        {"[key]\nkey = 1", "x.toml:1: key: must be tables, each headed [[key]]"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(refusal(text), expected) << text;
}

} // namespace
} // namespace vmeter

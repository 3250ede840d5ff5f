#include "scene/load_device.h"

#include "device/wire.h"

#include <algorithm>
#include <cctype>

namespace vmeter {
namespace {

using vx63::wire::FailInfoResponse;
using vx63::wire::ProductInfoResponse;

// A text of the product data: it may fill its field.
std::string readText(const Fields& fields, std::string_view key, size_t width, const std::string& fallback)
{
    const std::string text = fields.text(key, fallback);
    const bool printable =
        std::all_of(text.begin(), text.end(), [](unsigned char c) { return c >= ' ' && c <= '~'; });
    if (text.size() > width || !printable)
        fields.fail(key, "must be at most " + std::to_string(width) + " printable ASCII characters");
    return text;
}

ProductScene readProduct(const Fields& fields)
{
    fields.allow(kProductKeys);
    ProductScene product;
    const auto read = [&fields](std::string_view key, size_t width, std::string& text) {
        text = readText(fields, key, width, text);
    };
    read("model_code", sizeof ProductInfoResponse::cModelCode, product.modelCode);
    read("option_info", sizeof ProductInfoResponse::cOptInfo, product.optionInfo);
    read("serial_no", sizeof ProductInfoResponse::cSerialNo, product.serialNo);
    read("boot_version", sizeof ProductInfoResponse::cBootPrgVer, product.bootVersion);
    read("main_version", sizeof ProductInfoResponse::cMainPrgVer, product.mainVersion);
    read("sub_version", sizeof ProductInfoResponse::cSubPrgVer, product.subVersion);
    read("qt_version", sizeof ProductInfoResponse::cQtVer, product.qtVersion);
    read("product_version", sizeof ProductInfoResponse::cProductVer, product.productVersion);
    return product;
}

std::vector<uint8_t> readInfo(const Fields& fields)
{
    const std::string text = fields.text("info", "");
    const bool hex = std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isxdigit(c); });
    constexpr size_t kBytes = sizeof FailInfoResponse::ucAddInfo;
    if (!hex || text.size() % 2 != 0 || text.size() > 2 * kBytes)
        fields.fail("info",
                    "must be at most " + std::to_string(kBytes) + " bytes, two hexadecimal digits each");
    std::vector<uint8_t> info;
    for (size_t i = 0; i < text.size(); i += 2)
        info.push_back(static_cast<uint8_t>(std::stoul(text.substr(i, 2), nullptr, 16)));
    return info;
}

FailureScene readFailure(const Fields& fields)
{
    fields.allow(kFailureKeys);
    FailureScene failure;
    failure.usCode = static_cast<uint16_t>(fields.integer("code", 0, UINT16_MAX, 0));
    failure.ucState = static_cast<uint8_t>(fields.integer("state", 0, 1, 0));
    failure.ucControl = static_cast<uint8_t>(fields.integer("control", 0, UINT8_MAX, 0));
    failure.usWait = static_cast<uint16_t>(fields.integer("wait", 0, UINT16_MAX, 0));
    failure.info = readInfo(fields);
    return failure;
}

ConditionScene readCondition(const Fields& fields)
{
    constexpr std::string_view kCharging[] = {"no", "charging", "full"};

    fields.allow(kDeviceKeys);
    ConditionScene condition;
    const auto byte = [&fields](std::string_view key, uint8_t max, uint8_t& value) {
        value = static_cast<uint8_t>(fields.integer(key, 0, max, value));
    };
    byte("battery_percent", 100, condition.ucBatteryPercent);
    condition.usBatteryMv =
        static_cast<uint16_t>(fields.integer("battery_mv", 0, UINT16_MAX, condition.usBatteryMv));
    condition.lowBattery = fields.flag("low_battery", condition.lowBattery);
    condition.externalPower = fields.flag("external_power", condition.externalPower);
    condition.charging = static_cast<Charging>(fields.choice("charging", kCharging, 0));
    if (condition.charging != Charging::no && !condition.externalPower)
        fields.fail("charging", "needs external_power = true beside it");
    byte("temperature_c", 100, condition.ucTemperatureC);
    condition.usb1 = fields.flag("usb1", condition.usb1);
    condition.usb2 = fields.flag("usb2", condition.usb2);
    byte("brightness", 2, condition.ucBrightness);
    byte("volume", 3, condition.ucVolume);
    condition.developerMode = fields.flag("developer_mode", condition.developerMode);
    return condition;
}

PowerScene readPower(const Fields& fields)
{
    constexpr std::string_view kStandby[] = {"none", "meter", "measurement"};

    fields.allow(kPowerKeys);
    PowerScene power;
    power.standby = static_cast<Standby>(fields.choice("standby", kStandby, 0));
    power.ulRebootMs = static_cast<uint32_t>(fields.integer("reboot_ms", 0, 600000, power.ulRebootMs));
    return power;
}

UpdateScene readUpdate(const Fields& fields)
{
    fields.allow(kUpdateKeys);
    UpdateScene update;
    update.ulSteps = static_cast<uint32_t>(fields.integer("steps", 0, 100000, update.ulSteps));
    update.ulFailStep = static_cast<uint32_t>(fields.integer("fail_step", 0, update.ulSteps + int64_t{1}, 0));
    return update;
}

KeyPress readKeyPress(const Fields& fields)
{
    constexpr int64_t kLongest = 1'000'000'000'000; // 30 years
    fields.allow(kKeyKeys);
    KeyPress press{};
    press.ucKey = static_cast<uint8_t>(fields.integer("key", 0, kKeyCount - 1));
    press.ulTimeMs = static_cast<uint64_t>(fields.integer("time_ms", 0, kLongest));
    press.ulDurationMs = static_cast<uint64_t>(fields.integer("duration_ms", 1, kLongest));
    return press;
}

} // namespace

DeviceScene readDeviceScene(const Fields& top)
{
    DeviceScene scene;
    if (const auto table = top.table("product"))
        scene.product = readProduct(*table);
    if (const auto table = top.table("failure"))
        scene.failure = readFailure(*table);
    if (const auto table = top.table("device"))
        scene.condition = readCondition(*table);
    if (const auto table = top.table("power"))
        scene.power = readPower(*table);
    if (const auto table = top.table("update"))
        scene.update = readUpdate(*table);
    for (const Fields& table : top.tables("key"))
        scene.keyPresses.push_back(readKeyPress(table));
    return scene;
}

} // namespace vmeter

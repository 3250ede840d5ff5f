#include "device/device_status.h"

#include "common/text.h"

#include <iterator>
#include <string>

namespace tool {

namespace {

// Bits of usStat0.
constexpr unsigned kUsb1 = 0x0001;
constexpr unsigned kUsb2 = 0x0002;

constexpr const char* kFeeds[] = {"battery", "external power"};  // ulStat3
constexpr const char* kChargers[] = {"off", "charging", "full"}; // ulStat4
constexpr const char* kBatteryStates[] = {"good", "low"};        // ulStat5

template <size_t kNames>
std::string wordFor(const char* const (&names)[kNames], uint32_t code)
{
    return code < kNames ? names[code] : format("code %u", code);
}

std::string usbText(unsigned bits)
{
    switch (bits) {
    case 0:
        return "none";
    case kUsb1:
        return "in slot 1";
    case kUsb2:
        return "in slot 2";
    case kUsb1 | kUsb2:
        return "in slots 1 and 2";
    default:
        return format("code 0x%04X", bits);
    }
}

} // namespace

Rows deviceStatusRows(const DeviceStatus& status)
{
    return {
        {"Battery", format("%u %%", status.ucStat2)},
        {"Battery voltage", format("%u mV", status.usStat8)},
        {"Battery state", wordFor(kBatteryStates, status.ulStat5)},
        {"Fed by", wordFor(kFeeds, status.ulStat3)},
        {"Charger", wordFor(kChargers, status.ulStat4)},
        {"Temperature", format("%u C", status.ucStat6)},
        {"USB memory", usbText(status.usStat0)},
    };
}

Json deviceStatusJson(const DeviceStatus& status)
{
    const auto yesNo = [](uint32_t code) { return code <= 1 ? Json(code == 1) : Json(); };
    return {
        {"battery_percent", status.ucStat2},
        {"battery_mv", status.usStat8},
        {"low_battery", yesNo(status.ulStat5)},
        {"external_power", yesNo(status.ulStat3)},
        {"charger", status.ulStat4 < std::size(kChargers) ? Json(kChargers[status.ulStat4]) : Json()},
        {"temperature_c", status.ucStat6},
        {"usb1", (status.usStat0 & kUsb1) != 0},
        {"usb2", (status.usStat0 & kUsb2) != 0},
        {"battery_state_code", status.ulStat5},
        {"feed_code", status.ulStat3},
        {"charger_code", status.ulStat4},
        {"usb_code", status.usStat0},
    };
}

bool isPlausible(const DeviceStatus& status)
{
    constexpr unsigned kPercentMax = 100;
    return (status.usStat0 & ~(kUsb1 | kUsb2)) == 0 && status.ucStat2 <= kPercentMax &&
           status.ulStat3 < std::size(kFeeds) && status.ulStat4 < std::size(kChargers) &&
           status.ulStat5 < std::size(kBatteryStates);
}

} // namespace tool

#include "common/services.h"

#include "device/device_status.h"
#include "libvx63.h"

#include <algorithm>

namespace tool {

namespace {

bool isText(std::span<const char> field)
{
    const auto end = std::ranges::find(field, '\0');
    return std::all_of(field.begin(), end, [](char c) { return c >= ' ' && c <= '~'; }) &&
           std::all_of(end, field.end(), [](char c) { return c == '\0'; });
}

int32_t askSystem(Sense& sense)
{
    ProductInfo info{};
    const int32_t result = vx63_getProductInfo(&info);
    const bool text = isText(info.cModelCode) && isText(info.cOptInfo) && isText(info.cSerialNo) &&
                      isText(info.cBootPrgVer) && isText(info.cMainPrgVer) && isText(info.cSubPrgVer) &&
                      isText(info.cQtVer) && isText(info.cProductVer);
    const bool empty =
        info.cSerialNo[0] == '\0' && info.cMainPrgVer[0] == '\0' && info.cProductVer[0] == '\0';
    sense = !text ? Sense::none : empty ? Sense::empty : Sense::good;
    return result;
}

int32_t askDevice(Sense& sense)
{
    DeviceStatus status{};
    const int32_t result = vx63_getDeviceStatus(&status);
    const bool empty = status.ucStat2 == 0 && status.ucStat6 == 0 && status.usStat8 == 0;
    sense = !isPlausible(status) ? Sense::none : empty ? Sense::empty : Sense::good;
    return result;
}

int32_t askKeys(Sense& sense)
{
    KeyStatus keys{};
    const int32_t result = vx63_getKeyStatus(&keys);
    sense =
        std::ranges::all_of(keys.stat, [](int32_t state) { return state <= 1; }) ? Sense::good : Sense::none;
    return result;
}

// The buzzer service has nothing to read: a key click that does not sound is stopped.
int32_t askBuzzer(Sense&)
{
    constexpr int32_t kClick = 0;
    constexpr int32_t kStop = 2;
    return vx63_buzzer(kClick, kStop);
}

int32_t askMeasurement(Sense&)
{
    MeasStatus status{};
    return vx63_getMeasStatus(&status);
}

constexpr Service kServices[] = {
    {"System service", "sys", PROC_ID_PSYS, "PROC_ID_PSYS", 0x0005, askSystem},
    {"Device service", "dev", PROC_ID_PDEV, "PROC_ID_PDEV", 0x0006, askDevice},
    {"Key service", "key", PROC_ID_PKEY, "PROC_ID_PKEY", 0x0008, askKeys},
    {"Buzzer service", "buz", PROC_ID_PBUZ, "PROC_ID_PBUZ", 0x0009, askBuzzer},
    {"Measurement service", "meas", PROC_ID_PMEAS, "PROC_ID_PMEAS", 0x0017, askMeasurement},
};

} // namespace

std::span<const Service> services()
{
    return kServices;
}

const Service* serviceOf(uint8_t id)
{
    const auto* const found = std::ranges::find(kServices, id, &Service::id);
    return found != std::end(kServices) ? found : nullptr;
}

} // namespace tool

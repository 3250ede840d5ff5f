#include "model/device_state.h"

#include <algorithm>

namespace vmeter {
namespace {

// A text as the fields of the product data hold it.
template <size_t kWidth>
void setText(char (&field)[kWidth], const std::string& text)
{
    std::copy_n(text.begin(), std::min(kWidth, text.size()), field);
}

} // namespace

DeviceState initialDeviceState(const DeviceScene& scene)
{
    DeviceState device{};
    setText(device.product.cModelCode, scene.product.modelCode);
    setText(device.product.cOptInfo, scene.product.optionInfo);
    setText(device.product.cSerialNo, scene.product.serialNo);
    setText(device.product.cBootPrgVer, scene.product.bootVersion);
    setText(device.product.cMainPrgVer, scene.product.mainVersion);
    setText(device.product.cSubPrgVer, scene.product.subVersion);
    setText(device.product.cQtVer, scene.product.qtVersion);
    setText(device.product.cProductVer, scene.product.productVersion);
    device.failure.usCode = scene.failure.usCode;
    device.failure.ucStat = scene.failure.ucState;
    device.failure.ucCtl = scene.failure.ucControl;
    device.failure.usWait = scene.failure.usWait;
    std::copy(scene.failure.info.begin(), scene.failure.info.end(), device.failure.ucAddInfo);
    device.standby = scene.power.standby;
    device.ucLowBattery = scene.condition.lowBattery;
    device.ucDeveloperMode = scene.condition.developerMode;
    device.ucBrightness = scene.condition.ucBrightness;
    std::fill_n(device.buzzer.ucVolumes, kSoundCount, scene.condition.ucVolume);
    return device;
}

} // namespace vmeter

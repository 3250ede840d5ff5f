// Settings files: notices of their changes, and the return to the factory settings.
#include "device/wire.h"
#include "libvx63.h"
#include "services/results.h"
#include "services/settings_files.h"
#include "services/system.h"
#include "setfile/wire.h"

#include <algorithm>

namespace vmeter {
namespace {

namespace wire = vx63::wire;

// What the meter itself does with the new contents of a file.
void takeIntoUse(DeviceState& device, uint8_t fileId, const std::vector<uint8_t>& content)
{
    constexpr std::size_t kVolume = 4;     // column VOLUME
    constexpr std::size_t kBrightness = 3; // column BRIGHTNESS, 1 to 3
    if (fileId == VX63_SET_FILE_VOLUME && content[kVolume] <= kVolumeMax)
        std::fill_n(device.buzzer.ucVolumes, kSoundCount, content[kVolume]);
    if (fileId == VX63_SET_FILE_BRIGHTNESS && content[kBrightness] >= 1 &&
        content[kBrightness] <= kBrightnessMax + 1)
        device.ucBrightness = static_cast<uint8_t>(content[kBrightness] - 1);
}

// lRecord: -1 for the whole file.
Body reload(Meter& meter, uint8_t fileId, int64_t record)
{
    if (fileId >= VX63_SET_FILE_COUNT) {
        meter.note = "no settings file " + std::to_string(fileId);
        return resultBody(kRetParameter);
    }
    const ReadBack read = readSettings(meter.settings, fileId);
    NoticeState& notice = meter.state.device.notice;
    ++notice.ulCount;
    notice.lFileId = fileId;
    notice.lRecord = static_cast<int32_t>(std::min<int64_t>(record, INT32_MAX));
    notice.ucRead = read.records >= 0;
    if (read.records < 0) {
        meter.note = "cannot reload " + read.path + ": lsys_err=" + std::to_string(read.records);
        return resultBody(kRetError);
    }
    if (record >= read.records) {
        meter.note = read.path + " has no record " + std::to_string(record);
        return resultBody(kRetParameter);
    }
    meter.note = "reloaded " + read.path;
    if (record >= 0)
        meter.note += ", record " + std::to_string(record);
    if (read.records > 0 && !read.content.empty())
        takeIntoUse(meter.state.device, fileId, read.content);
    return resultBody(kRetOk);
}

} // namespace

Body fileChanged(Meter& meter, std::span<const uint8_t> request)
{
    const auto changed = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof changed)
        return resultBody(kRetParameter);
    return reload(meter, changed.ucArg, -1);
}

Body recordChanged(Meter& meter, std::span<const uint8_t> request)
{
    const auto changed = bodyAs<wire::UpdateFileIdxRequest>(request);
    if (request.size() < sizeof changed)
        return resultBody(kRetParameter);
    return reload(meter, changed.ucFileId, changed.ulIdx);
}

Body factoryDefault(Meter& meter, std::span<const uint8_t> request)
{
    if (request.size() < sizeof(wire::ByteRequest))
        return resultBody(kRetParameter);
    if (!restoreSettings(meter.settings)) {
        meter.note = meter.settings.own ? "the settings folders cannot be filled"
                                        : "the settings folders are not the meter's own";
        return resultBody(kRetError);
    }
    const DeviceState initial = initialDeviceState(meter.scene.device);
    DeviceState& device = meter.state.device;
    device.ucBrightness = initial.ucBrightness;
    device.ucDeveloperMode = initial.ucDeveloperMode;
    std::copy_n(initial.buzzer.ucVolumes, kSoundCount, device.buzzer.ucVolumes);
    ++device.ulFactoryResets;
    return resultBody(kRetOk);
}

} // namespace vmeter

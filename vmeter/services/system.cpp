// The system service. docs/services.md tells arguments, results and what they do to the meter.
#include "libvx63.h"
#include "power.h"
#include "service.h"
#include "services/results.h"
#include "services/update_request.h"

#include "device/wire.h"
#include "setfile/wire.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace vmeter {
namespace {

namespace wire = vx63::wire;

constexpr uint8_t kModeMeter = 0;

// ---- information ----

Body failureRecord(Meter& meter, std::span<const uint8_t>)
{
    return toBody(meter.state.device.failure);
}

Body productData(Meter& meter, std::span<const uint8_t>)
{
    return toBody(meter.state.device.product);
}

Body setFailure(Meter& meter, std::span<const uint8_t> request)
{
    const auto failure = bodyAs<wire::SetFailStatRequest>(request);
    if (request.size() < sizeof failure || failure.ucStat > 1)
        return resultBody(kRetParameter);
    wire::FailInfoResponse& record = meter.state.device.failure;
    record.usCode = failure.usCode;
    record.ucStat = failure.ucStat;
    std::copy(std::begin(failure.ucAddInfo), std::end(failure.ucAddInfo), record.ucAddInfo);
    return resultBody(kRetOk);
}

// ---- display, power, modes ----

Body setBrightness(Meter& meter, std::span<const uint8_t> request)
{
    const auto brightness = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof brightness || brightness.ucArg > kBrightnessMax)
        return resultBody(kRetParameter);
    meter.state.device.ucBrightness = brightness.ucArg;
    return resultBody(kRetOk);
}

Body rebootMeter(Meter& meter, std::span<const uint8_t> request)
{
    if (request.size() < sizeof(wire::ByteRequest))
        return resultBody(kRetParameter);
    reboot(meter, steadyMs());
    return resultBody(kRetOk);
}

Body shutDown(Meter& meter, std::span<const uint8_t> request)
{
    if (request.size() < sizeof(wire::ByteRequest))
        return resultBody(kRetParameter);
    meter.state.device.ucOff = 1;
    return resultBody(kRetOk);
}

Body standbyMeter(Meter& meter, std::span<const uint8_t> request)
{
    const auto mode = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof mode || mode.ucArg != kModeMeter)
        return resultBody(kRetParameter);
    if (meter.state.device.update.ucRunning)
        return resultBody(kRetNotNow);
    fallAsleep(meter.state, Standby::meter);
    return resultBody(kRetOk);
}

Body wakeUpMeter(Meter& meter, std::span<const uint8_t> request)
{
    const auto mode = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof mode || mode.ucArg != kModeMeter)
        return resultBody(kRetParameter);
    DeviceState& device = meter.state.device;
    if (device.standby != Standby::none && device.ucLowBattery)
        return resultBody(kRetNotNow);
    device.standby = Standby::none;
    return resultBody(kRetOk);
}

Body setDeveloperMode(Meter& meter, std::span<const uint8_t> request)
{
    const auto onOff = bodyAs<wire::ByteRequest>(request);
    if (request.size() < sizeof onOff || onOff.ucArg > 1)
        return resultBody(kRetParameter);
    meter.state.device.ucDeveloperMode = onOff.ucArg;
    return resultBody(kRetOk);
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

// ---- program update ----

// The version that an update of a program replaces; none for a program that there is not.
std::span<char> versionOf(wire::ProductInfoResponse& product, uint8_t ucProgram)
{
    switch (ucProgram) {
    case 1:
        return product.cBootPrgVer;
    case 2:
        return product.cMainPrgVer;
    case 3:
        return product.cSubPrgVer;
    case 4:
        return product.cQtVer;
    case 5:
        return product.cProductVer;
    default:
        return {};
    }
}

bool isVersion(std::span<const char> text)
{
    const auto end = std::find(text.begin(), text.end(), '\0');
    return end != text.begin() &&
           std::all_of(text.begin(), end, [](char c) { return c >= ' ' && c <= '~'; }) &&
           std::all_of(end, text.end(), [](char c) { return c == '\0'; });
}

// What is wrong with a request; empty: nothing.
std::string_view wrongWith(const ProgramUpdate& asked, std::span<const uint8_t> bytes)
{
    constexpr uint8_t kPrograms = 5;
    constexpr uint8_t kSources = 3;
    if (std::memcmp(asked.cMagic, "VXUP", sizeof asked.cMagic) != 0)
        return "no update request";
    const auto summed = bytes.first(offsetof(ProgramUpdate, ulSum));
    if (std::accumulate(summed.begin(), summed.end(), uint32_t{0}) != asked.ulSum)
        return "wrong sum";
    if (asked.ucProgram == 0 || asked.ucProgram > kPrograms)
        return "no such program";
    if (asked.ucSource >= kSources)
        return "no such source";
    if (asked.ucReserved[0] != 0 || asked.ucReserved[1] != 0)
        return "reserved bytes are not 0";
    if (!isVersion(asked.cVersion))
        return "no version";
    return asked.ulSize == 0 ? "no size" : "";
}

Body updateProgram(Meter& meter, std::span<const uint8_t> request)
{
    constexpr uint8_t kRetFinished = 3;

    const auto asked = bodyAs<ProgramUpdate>(request);
    const std::string_view wrong =
        request.size() < sizeof asked ? "too short" : wrongWith(asked, request.first(sizeof asked));
    if (!wrong.empty()) {
        meter.note = wrong;
        return resultBody(kRetParameter);
    }

    DeviceState& device = meter.state.device;
    UpdateState& update = device.update;
    const auto bytes = bodyAs<wire::UpdateRequest>(request);
    if (!update.ucRunning) {
        if (device.ucLowBattery) {
            meter.note = "low battery";
            return resultBody(kRetNotNow);
        }
        update.request = bytes;
        update.ulStep = 0;
        update.ucRunning = 1;
    } else if (std::memcmp(update.request.ucData, bytes.ucData, sizeof bytes) != 0) {
        meter.note = "another update is under way";
        return resultBody(kRetNotNow);
    }

    const UpdateScene& scene = meter.scene.device.update;
    ++update.ulStep;
    if (update.ulStep == scene.ulFailStep) {
        update.ucRunning = 0;
        return resultBody(kRetError);
    }
    if (update.ulStep <= scene.ulSteps)
        return resultBody(kRetOk);
    update.ucRunning = 0;
    ++update.ulFinished;
    std::copy(std::begin(asked.cVersion), std::end(asked.cVersion),
              versionOf(device.product, asked.ucProgram).begin());
    return resultBody(kRetFinished);
}

// ---- settings files ----

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

constexpr Command kCommands[] = {
    {0x0004, "failure", failureRecord},
    {0x0005, "product", productData},
    {0x000B, "brightness", setBrightness},
    {0x000C, "reboot", rebootMeter},
    {0x000D, "shutdown", shutDown},
    {0x000E, "standby", standbyMeter},
    {0x000F, "wakeup", wakeUpMeter},
    {0x0010, "update", updateProgram},
    {0x0011, "set-failure", setFailure},
    {0x0012, "file-changed", fileChanged},
    {0x0013, "record-changed", recordChanged},
    {0x001A, "factory-default", factoryDefault},
    {0x001B, "developer-mode", setDeveloperMode},
};

} // namespace

const Service kSystemService = {PROC_ID_PSYS, "sys", kCommands};

} // namespace vmeter

// What the user hears and sees: the buzzer, its volume, the brightness of the display.
#include "device/wire.h"
#include "frame/call.h"
#include "libvx63.h"

using namespace vx63;

static constexpr uint32_t kBuzzMax = 4;

// The volume's rule: as judgeParameter, but 3 is a repeating pattern.
static int32_t judgeVolume(uint8_t ucRet, Caller caller)
{
    if (ucRet == 3) {
        logLine({caller}, "buzzer repeating. vx63_err=%d", VX63_ERR_REPEAT);
        return VX63_ERR_REPEAT;
    }
    return judgeParameter(ucRet, caller);
}

// The buzzer's rule: as the volume's, but 4 is a sound of higher priority.
static int32_t judgeBuzzer(uint8_t ucRet, Caller caller)
{
    if (ucRet == 4) {
        logLine({caller}, "buzzer priority busy. vx63_err=%d", VX63_ERR_PRIORITY);
        return VX63_ERR_PRIORITY;
    }
    return judgeVolume(ucRet, caller);
}

static constexpr Request kBuzzer = {
    .ucDstId = PROC_ID_PBUZ, .usCmd = 0x0009, .ulTimeout = 10000, .commFailed = "PROC_ID_PBUZ"};

int32_t vx63_buzzer(int32_t buzz, int32_t buzzMode)
{
    constexpr uint32_t kBuzzModeMax = 2;

    logLine({}, "Start.");
    if (static_cast<uint32_t>(buzz) > kBuzzMax) {
        logLine({}, "arg error. buzz=%d", buzz);
        return logEnd(VX63_ERR_ARG);
    }
    if (static_cast<uint32_t>(buzzMode) > kBuzzModeMax) {
        logLine({}, "arg error. buzzMode=%d", buzzMode);
        return logEnd(VX63_ERR_ARG);
    }
    logLine({}, "buzz=%d buzzMode=%d", buzz, buzzMode);
    wire::BuzzerRequest reqData = {};
    reqData.ucBuzz = static_cast<uint8_t>(buzz);
    reqData.ucBuzzMode = static_cast<uint8_t>(buzzMode);

    return logEnd(exchange(kBuzzer, reqData, judgeBuzzer));
}

static constexpr Request kForceBuzzerVolume = {
    .ucDstId = PROC_ID_PBUZ, .usCmd = 0x000A, .ulTimeout = 10000, .commFailed = "PROC_ID_PBUZ"};

int32_t vx63_forceBuzzerVolume(int32_t buzz, int32_t buzzVol)
{
    constexpr uint32_t kBuzzVolMax = 3;

    logLine({}, "Start.");
    if (static_cast<uint32_t>(buzz) > kBuzzMax) {
        logLine({}, "arg error. buzz=%d", buzz);
        return logEnd(VX63_ERR_ARG);
    }
    if (static_cast<uint32_t>(buzzVol) > kBuzzVolMax) {
        logLine({}, "arg error. buzzVol=%d", buzzVol);
        return logEnd(VX63_ERR_ARG);
    }
    logLine({}, "buzz=%d buzzVol=%d", buzz, buzzVol);
    wire::BuzzerVolumeRequest reqData = {};
    reqData.ucBuzz = static_cast<uint8_t>(buzz);
    reqData.ucBuzzVol = static_cast<uint8_t>(buzzVol);

    return logEnd(exchange(kForceBuzzerVolume, reqData, judgeVolume));
}

static constexpr Request kForceBrightness = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x000B, .ulTimeout = 10000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_forceBrightness(int32_t brightness)
{
    constexpr uint32_t kBrightnessMax = 2;

    logLine({}, "Start.");
    if (static_cast<uint32_t>(brightness) > kBrightnessMax) {
        logLine({}, "arg error. brightness=%d", brightness);
        return logEnd(VX63_ERR_ARG);
    }
    logLine({}, "brightness=%d", brightness);
    const wire::ByteRequest reqData = {.ucArg = static_cast<uint8_t>(brightness)};

    return logEnd(exchange(kForceBrightness, reqData, judgeParameter));
}

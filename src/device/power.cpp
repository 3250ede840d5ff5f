// Power and system state: restart, power off, standby and wake-up, calibration, low battery, factory
// default, developer mode. No operation checks the range of its argument: the service judges it.
#include "device/wire.h"
#include "frame/call.h"
#include "libvx63.h"

using namespace vx63;

static constexpr Request kReboot = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x000C, .ulTimeout = 10000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_reboot()
{
    logLine({}, "Start.");
    return logEnd(exchange(kReboot, wire::ByteRequest{}, judge));
}

static constexpr Request kShutdown = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x000D, .ulTimeout = 10000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_shutdown()
{
    logLine({}, "Start.");
    return logEnd(exchange(kShutdown, wire::ByteRequest{}, judge));
}

static constexpr Request kStandbySystem = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x000E, .ulTimeout = 10000, .commFailed = "PROC_ID_PSYS"};
static constexpr Request kStandbyMeas = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x000E, .ulTimeout = 10000, .commFailed = "PROC_ID_PMEAS"};

int32_t vx63_standby(uint8_t ucMode)
{
    logLine({}, "Start. ucMode=%u", ucMode);
    return logEnd(
        exchange(ucMode == 0 ? kStandbySystem : kStandbyMeas, wire::ByteRequest{.ucArg = ucMode}, judge));
}

static constexpr Request kWakeupSystem = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x000F, .ulTimeout = 10000, .commFailed = "PROC_ID_PSYS"};
static constexpr Request kWakeupMeas = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x000F, .ulTimeout = 10000, .commFailed = "PROC_ID_PMEAS"};

int32_t vx63_wakeup(uint8_t ucMode)
{
    logLine({}, "Start. ucMode=%u", ucMode);
    return logEnd(
        exchange(ucMode == 0 ? kWakeupSystem : kWakeupMeas, wire::ByteRequest{.ucArg = ucMode}, judge));
}

// Intended: the forced ones ask the measurement service and name the system service when that fails.
static constexpr Request kForceStandby = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x001D, .ulTimeout = 10000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_force_standby()
{
    logLine({}, "Start.");
    return logEnd(exchange(kForceStandby, wire::ByteRequest{}, judge));
}

static constexpr Request kForceWakeup = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x001E, .ulTimeout = 10000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_force_wakeup()
{
    logLine({}, "Start.");
    return logEnd(exchange(kForceWakeup, wire::ByteRequest{}, judge));
}

static constexpr Request kGetStandbyStat = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0018, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63_getStandbyStat(uint32_t* pStandbyStat)
{
    logLine({}, "Start.");
    if (pStandbyStat == nullptr) {
        logLine({}, "arg error. pStandbyStat=%p", static_cast<void*>(pStandbyStat));
        return logEnd(VX63_ERR_ARG);
    }
    Response response;
    const int32_t vx63_err = exchange(kGetStandbyStat, wire::ByteRequest{}, response, judgeParameter);
    if (vx63_err == VX63_OK) {
        const auto rspData = response.as<wire::StandbyStatResponse>();
        *pStandbyStat = rspData.ulStandbyStat;
        logLine({}, "ulStandbyStat=%u", rspData.ulStandbyStat);
    }
    return logEnd(vx63_err);
}

static constexpr Request kCalibration = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0016, .ulTimeout = 5000, .commFailed = "PROC_ID_PMEAS"};

int32_t vx63_calibration(uint8_t ucMode)
{
    logLine({}, "Start. ucMode=%u", ucMode);
    return logEnd(exchange(kCalibration, wire::ByteRequest{.ucArg = ucMode}, judge));
}

static constexpr Request kNtfLowBattStatChg = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0019, .ulTimeout = 5000, .commFailed = "PROC_ID_PMEAS"};

// The notice's rule: as judgeParameter, but 3 is success.
static int32_t judgeLowBatt(uint8_t ucRet, Caller caller)
{
    return ucRet == 3 ? static_cast<int32_t>(VX63_OK) : judgeParameter(ucRet, caller);
}

int32_t vx63_ntfLowBattStatChg(uint8_t ucLowBattStat)
{
    logLine({}, "Start. ucLowBattStat=%u", ucLowBattStat);
    return logEnd(exchange(kNtfLowBattStatChg, wire::ByteRequest{.ucArg = ucLowBattStat}, judgeLowBatt));
}

static constexpr Request kInitFactoryDefault = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x001A, .ulTimeout = 5000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_initFactoryDefault()
{
    logLine({}, "Start.");
    return logEnd(exchange(kInitFactoryDefault, wire::ByteRequest{}, judge));
}

static constexpr Request kSetDeveloperMode = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x001B, .ulTimeout = 5000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_setDeveloperMode(uint8_t ucOnOff)
{
    logLine({}, "Start. ucOnOff=%u", ucOnOff);
    return logEnd(exchange(kSetDeveloperMode, wire::ByteRequest{.ucArg = ucOnOff}, judge));
}

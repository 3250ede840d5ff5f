// Input selection, antenna power supply, and the states of both.
#include "frame/call.h"
#include "libvx63.h"
#include "meas/wire.h"

using namespace vx63;

static_assert(sizeof(MeasStatus) == 8);
static_assert(offsetof(MeasStatus, ulMeasStat) == 0);
static_assert(offsetof(MeasStatus, usInputStat) == 4);

static_assert(sizeof(PowerSupplyInfo) == 12);
static_assert(offsetof(PowerSupplyInfo, ucPowerSupply) == 0);
static_assert(offsetof(PowerSupplyInfo, ucVolt) == 1);
static_assert(offsetof(PowerSupplyInfo, usAdVal) == 2);
static_assert(offsetof(PowerSupplyInfo, ulCurrentM) == 4);
static_assert(offsetof(PowerSupplyInfo, ulElecPowerM) == 8);

static constexpr Request kSetMeasInput = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0100, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63_setMeasInput(int32_t input)
{
    constexpr uint32_t kInputMax = 1;

    logLine({}, "Start.");
    if (static_cast<uint32_t>(input) > kInputMax) {
        logLine({}, "arg error. input=%d", input);
        return logEnd(VX63_ERR_ARG);
    }
    wire::SetInputRequest reqData = {};
    reqData.ucInput = static_cast<uint8_t>(input);

    return logEnd(exchange(kSetMeasInput, reqData, judgeMeas));
}

static constexpr Request kReqPowerSupply = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0015, .ulTimeout = 10000, .commFailed = "PROC_ID_PMEAS"};

int32_t vx63_reqPowerSupply(int32_t powerSupply)
{
    constexpr uint32_t kPowerSupplyMax = 4;

    logLine({}, "Start. powerSupply=%d", powerSupply);
    if (static_cast<uint32_t>(powerSupply) > kPowerSupplyMax) {
        logLine({}, "arg error. powerSupply=%d", powerSupply);
        return logEnd(VX63_ERR_ARG);
    }
    // Raw, unlike in a start body.
    const wire::ByteRequest reqData = {.ucArg = static_cast<uint8_t>(powerSupply)};

    return logEnd(exchange(kReqPowerSupply, reqData, judgeMeas));
}

static constexpr Request kGetMeasStatus = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0017, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63_getMeasStatus(MeasStatus* pMeasStat)
{
    logLine({}, "Start.");
    if (pMeasStat == nullptr) {
        logLine({}, "arg error. pMeasStat=%p", static_cast<void*>(pMeasStat));
        return logEnd(VX63_ERR_ARG);
    }
    Response response;
    const int32_t vx63_err = exchange(kGetMeasStatus, wire::ByteRequest{}, response, judgeMeas);
    if (vx63_err == VX63_OK) {
        const auto rspData = response.as<wire::MeasStatusResponse>();
        pMeasStat->ulMeasStat = rspData.ulMeasStat;
        pMeasStat->usInputStat = rspData.usInputStat;
        logLine({}, "ulMeasStat=%08X, usInputStat=%04X", pMeasStat->ulMeasStat, pMeasStat->usInputStat);
    }
    return logEnd(vx63_err);
}

static constexpr Request kGetPowerSupplyInfo = {
    .ucDstId = PROC_ID_PDEV, .usCmd = 0x0022, .ulTimeout = 10000, .commFailed = "PROC_ID_PDEV"};

// Intended: unlike the other getters, the pointer is not tested.
int32_t vx63_getPowerSupplyInfo(PowerSupplyInfo* pInfo)
{
    logLine({}, "Start.");
    Response response;
    const int32_t vx63_err = exchange(kGetPowerSupplyInfo, wire::ByteRequest{}, response, judge);
    if (vx63_err == VX63_OK) {
        const auto rspData = response.as<wire::PowerSupplyInfoResponse>();
        pInfo->ucPowerSupply = rspData.ucPowerSupply;
        pInfo->ucVolt = rspData.ucVolt;
        pInfo->usAdVal = rspData.usAdVal;
        pInfo->ulCurrentM = rspData.ulCurrentM;
        pInfo->ulElecPowerM = rspData.ulElecPowerM;
        logLine({}, "ucPowerSupply=%u, ucVolt=%u, usAdVal=%u, ulCurrentM=%u, ulElecPowerM=%u",
                pInfo->ucPowerSupply, pInfo->ucVolt, pInfo->usAdVal, pInfo->ulCurrentM, pInfo->ulElecPowerM);
    }
    return logEnd(vx63_err);
}

static constexpr Request kSetPowerSupplyMultiMeasMixBand = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x001C, .ulTimeout = 5000, .commFailed = "PROC_ID_PMEAS"};

int32_t vx63_setPowerSupplyMultiMeasMixBand(uint8_t ucOnOff)
{
    logLine({}, "Start. ucOnOff=%u", ucOnOff);
    const wire::ByteRequest reqData = {.ucArg = ucOnOff};

    return logEnd(exchange(kSetPowerSupplyMultiMeasMixBand, reqData, judge));
}

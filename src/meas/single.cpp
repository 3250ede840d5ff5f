// The single measurement: start, stop, latest values.
#include "meas/single.h"

#include "frame/call.h"
#include "meas/condition.h"
#include "meas/constellation.h"
#include "meas/wire.h"

using namespace vx63;

static_assert(sizeof(SingleMeasResult) == 8040);
static_assert(offsetof(SingleMeasResult, lock) == 0);
static_assert(offsetof(SingleMeasResult, stat) == 2);
static_assert(offsetof(SingleMeasResult, mesCond) == 4);
static_assert(offsetof(SingleMeasResult, reserved) == 6);
static_assert(offsetof(SingleMeasResult, bdSys) == 8);
static_assert(offsetof(SingleMeasResult, LEVEL) == 12);
static_assert(offsetof(SingleMeasResult, CNR) == 16);
static_assert(offsetof(SingleMeasResult, BER_TOTAL) == 20);
static_assert(offsetof(SingleMeasResult, BER_ERR) == 24);
static_assert(offsetof(SingleMeasResult, TSID) == 28);
static_assert(offsetof(SingleMeasResult, GI) == 30);
static_assert(offsetof(SingleMeasResult, LAYER) == 31);
static_assert(offsetof(SingleMeasResult, MOD) == 32);
static_assert(offsetof(SingleMeasResult, CONS_NUM) == 36);
static_assert(offsetof(SingleMeasResult, points) == 38);

// Start and stop share a command; the body tells them apart.
static constexpr Request kSingleMeas = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0103, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63::vx63_startSingleMeasCommon(uint8_t ucDispType, const MeasCondition* pCondition)
{
    if (pCondition == nullptr) {
        logLine({}, "arg error. pCondition=%p", static_cast<const void*>(pCondition));
        return VX63_ERR_ARG;
    }
    const wire::StartRequest reqData = packStart(ucDispType, *pCondition);

    Response response;
    const int32_t vx63_err = exchange(kSingleMeas, reqData, response);
    return vx63_err == VX63_OK ? judgeMeas(response.ucRet()) : vx63_err;
}

int32_t vx63_startSingleMeas(uint8_t ucDispType, const MeasCondition* pCondition)
{
    logLine({}, "Start.");
    return logEnd(vx63_startSingleMeasCommon(ucDispType, pCondition));
}

int32_t vx63_stopSingleMeas(uint8_t ucDispType)
{
    logLine({}, "Start.");
    const wire::StartRequest reqData = packStop(ucDispType);

    Response response;
    int32_t vx63_err = exchange(kSingleMeas, reqData, response);
    if (vx63_err == VX63_OK) {
        vx63_err = judgeMeas(response.ucRet());
    }
    return logEnd(vx63_err);
}

void vx63::storeValues(const wire::SingleResultResponse& rspData, SingleMeasResult& result)
{
    result.lock = rspData.lock;
    result.stat = rspData.stat;
    result.mesCond = rspData.mesCond;
    result.bdSys = rspData.bdSys;
    result.LEVEL = rspData.LEVEL;
    result.CNR = rspData.CNR;
    result.BER_TOTAL = rspData.BER_TOTAL;
    result.BER_ERR = rspData.BER_ERR;
    result.TSID = rspData.TSID;
    result.GI = rspData.GI;
    result.LAYER = rspData.LAYER;
    result.MOD = rspData.MOD;
}

void vx63::logValues(const SingleMeasResult& result, Caller caller)
{
    logLine({caller},
            "lock=%02X stat=%04X mesCond=%04X bdSys=%04X LEVEL=%u CNR=%u BER_TOTAL=%u BER_ERR=%u "
            "TSID=%04X GI=%u LAYER=%02X MOD=%04X",
            result.lock, result.stat, result.mesCond, result.bdSys, result.LEVEL, result.CNR,
            result.BER_TOTAL, result.BER_ERR, result.TSID, result.GI, result.LAYER, result.MOD);
}

static constexpr Request kSingleMeasResult = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0104, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63_getSingleMeasResult(uint16_t usReadCount, SingleMeasResult* pResult)
{
    logLine({}, "Start.");
    if (pResult == nullptr) {
        logLine({}, "arg error. pResult=%p", static_cast<void*>(pResult));
        return logEnd(VX63_ERR_ARG);
    }
    logLine({}, "pResult=%p", static_cast<void*>(pResult));
    if (usReadCount != 0) {
        return logEnd(readConstellation(usReadCount, *pResult));
    }
    Response response;
    int32_t vx63_err = exchange(kSingleMeasResult, wire::ByteRequest{}, response);
    if (vx63_err == VX63_OK) {
        logLine({}, "rspData.ucRet=%u", response.ucRet());
        vx63_err = judgeMeasResult(response.ucRet());
    }
    if (vx63_err == VX63_OK) {
        storeValues(response.as<wire::SingleResultResponse>(), *pResult);
        logValues(*pResult);
    }
    return logEnd(vx63_err);
}

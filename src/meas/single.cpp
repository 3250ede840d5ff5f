// The single measurement: start, stop, latest values.
#include "meas/single.h"

#include "frame/call.h"
#include "meas/condition.h"
#include "meas/constellation.h"
#include "meas/values.h"
#include "meas/wire.h"

using namespace vx63;

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

    return exchange(kSingleMeas, reqData, judgeMeas);
}

int32_t vx63_startSingleMeas(uint8_t ucDispType, const MeasCondition* pCondition)
{
    logLine({}, "Start.");
    return logEnd(vx63_startSingleMeasCommon(ucDispType, pCondition));
}

int32_t vx63::stopSingle(uint8_t ucDispType, Caller caller)
{
    const wire::StartRequest reqData = packStop(ucDispType, caller);

    return exchange(kSingleMeas, reqData, judgeMeas, caller);
}

int32_t vx63_stopSingleMeas(uint8_t ucDispType)
{
    logLine({}, "Start.");
    return logEnd(stopSingle(ucDispType));
}

static constexpr Request kSingleMeasResult = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0104, .ulTimeout = 10000, .commFailed = "subcpu"};

// As judgeMeasResult; every ucRet is logged.
static int32_t judgeSingleMeasResult(uint8_t ucRet, Caller caller)
{
    logLine({caller}, "rspData.ucRet=%u", ucRet);
    return judgeMeasResult(ucRet, caller);
}

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
    const int32_t vx63_err =
        exchange(kSingleMeasResult, wire::ByteRequest{}, response, judgeSingleMeasResult);
    if (vx63_err == VX63_OK) {
        storeValues(response.as<wire::SingleResultResponse>(), *pResult);
        logValues(*pResult);
    }
    return logEnd(vx63_err);
}

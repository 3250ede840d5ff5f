// The priority multi-channel measurement: a multi-channel run through the commands of a single measurement.
#include "frame/call.h"
#include "meas/single.h"
#include "meas/values.h"
#include "meas/wire.h"

using namespace vx63;

int32_t vx63_startMultiChPrioMeas(uint8_t ucDispType, const MeasCondition* pCondition)
{
    logLine({}, "Start.");
    return logEnd(vx63_startSingleMeasCommon(ucDispType, pCondition));
}

int32_t vx63_stopMultiChPrioMeas(uint8_t ucDispType)
{
    logLine({}, "Start.");
    return logEnd(stopSingle(ucDispType));
}

static constexpr Request kMultiChPrioMeas = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0104, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63_getMultiChPrioMeas(SingleMeasResult* pResult)
{
    logLine({}, "Start.");
    if (pResult == nullptr) {
        logLine({}, "arg error. pResult=%p", static_cast<void*>(pResult));
        return logEnd(VX63_ERR_ARG);
    }
    logLine({}, "pResult=%p", static_cast<void*>(pResult));

    Response response;
    const int32_t vx63_err = exchange(kMultiChPrioMeas, wire::ByteRequest{}, response, judgeMeasResult);
    if (vx63_err == VX63_OK) {
        storeValues(response.as<wire::SingleResultResponse>(), *pResult);
        logValues(*pResult);
    }
    return logEnd(vx63_err);
}

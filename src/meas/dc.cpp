// DC voltage.
#include "frame/call.h"
#include "libvx63.h"
#include "meas/wire.h"

using namespace vx63;

// Start and stop share a command; the body tells them apart.
static constexpr Request kDcMeas = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x010E, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63_startDcMeas(void)
{
    logLine({}, "Start.");
    wire::DcMeasRequest reqData = {};
    reqData.ucStartStop = wire::kStart;

    return logEnd(exchange(kDcMeas, reqData, judgeMeas));
}

int32_t vx63_stopDcMeas(void)
{
    logLine({}, "Start.");
    wire::DcMeasRequest reqData = {};
    reqData.ucStartStop = wire::kStop;

    return logEnd(exchange(kDcMeas, reqData, judgeMeas));
}

static constexpr Request kDcMeasResult = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x010F, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63_getDcMeasResult(uint32_t* pResult)
{
    logLine({}, "Start.");
    if (pResult == nullptr) {
        logLine({}, "arg error. pResult=%p", static_cast<void*>(pResult));
        return logEnd(VX63_ERR_ARG);
    }
    Response response;
    // Intended: 3 is no power-supply error here.
    const int32_t vx63_err = exchange(kDcMeasResult, wire::ByteRequest{}, response, judgeMeas);
    if (vx63_err == VX63_OK) {
        *pResult = response.as<wire::DcMeasResultResponse>().ulDcV;
        logLine({}, "ulDcV=%u", *pResult);
    }
    return logEnd(vx63_err);
}

// Optical input power.
#include "frame/call.h"
#include "libvx63.h"
#include "meas/wire.h"

using namespace vx63;

// Start and stop share a command; the body tells them apart.
static constexpr Request kOptMeas = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x010C, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63_startOptMeas(uint32_t ulWaveLength)
{
    logLine({}, "Start.");
    logLine({}, "ulWaveLength=%u", ulWaveLength);
    if (ulWaveLength == 0) {
        logLine({}, "arg error. ulWaveLength=%u", ulWaveLength);
        return logEnd(VX63_ERR_ARG);
    }
    wire::OptMeasRequest reqData = {};
    reqData.ucStartStop = wire::kStart;
    reqData.ulWaveLength = ulWaveLength;

    return logEnd(exchange(kOptMeas, reqData, judgeMeas));
}

int32_t vx63_stopOptMeas(void)
{
    logLine({}, "Start.");
    wire::OptMeasRequest reqData = {};
    reqData.ucStartStop = wire::kStop;

    return logEnd(exchange(kOptMeas, reqData, judgeMeas));
}

static constexpr Request kOptMeasResult = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x010D, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63_getOptMeasResult(int32_t* pResult)
{
    logLine({}, "Start.");
    if (pResult == nullptr) {
        logLine({}, "arg error. pResult=%p", static_cast<void*>(pResult));
        return logEnd(VX63_ERR_ARG);
    }
    Response response;
    // Intended: 3 is no power-supply error here.
    const int32_t vx63_err = exchange(kOptMeasResult, wire::ByteRequest{}, response, judgeMeas);
    if (vx63_err == VX63_OK) {
        *pResult = response.as<wire::OptMeasResultResponse>().lOptPow;
        logLine({}, "lOptPow=%d", *pResult);
    }
    return logEnd(vx63_err);
}

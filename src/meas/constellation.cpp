// Constellation points of a running single measurement: start and stop of their collection, reading them.
#include "meas/constellation.h"

#include "frame/call.h"
#include "meas/values.h"
#include "meas/wire.h"

#include <algorithm>
#include <cstring>

using namespace vx63;

static_assert(sizeof(ConstaPoint) == 2);
static_assert(offsetof(ConstaPoint, I) == 0);
static_assert(offsetof(ConstaPoint, Q) == 1);

// Start and stop share a command; the body tells them apart.
static constexpr Request kConstaMeas = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0105, .ulTimeout = 10000, .commFailed = "subcpu"};

int32_t vx63_startConstaMeas(uint8_t ucDispType, int32_t collectNum)
{
    logLine({}, "Start.");
    if (collectNum != 1000 && collectNum != 2000 && collectNum != 4000) { // intended: no 3000
        logLine({}, "arg error. collectNum=%d", collectNum);
        return logEnd(VX63_ERR_ARG);
    }
    wire::StartConstaRequest reqData = {};
    reqData.ucDispType = ucDispType;
    reqData.ucStartStop = wire::kStart;
    reqData.collectNum = static_cast<uint16_t>(collectNum);
    logLine({}, "reqData.ucDispType=%u", reqData.ucDispType);
    logLine({}, "collectNum=%d", collectNum);

    return logEnd(exchange(kConstaMeas, reqData, judgeMeas));
}

int32_t vx63_stopConstaMeas(uint8_t ucDispType)
{
    logLine({}, "Start.");
    wire::StartConstaRequest reqData = {};
    reqData.ucDispType = ucDispType;
    reqData.ucStartStop = wire::kStop;
    logLine({}, "reqData.ucDispType=%u", reqData.ucDispType);

    return logEnd(exchange(kConstaMeas, reqData, judgeMeas));
}

// The thread's own, to spare its stack.
static constinit thread_local wire::ConstaRequest s_reqDataConsta = {};
static constinit thread_local Response s_rspDataConsta = {};

static constexpr Request kConstaResult = {
    .ucDstId = PROC_ID_PMEAS, .usCmd = 0x0106, .ulTimeout = 10000, .commFailed = "subcpu"};

// As judgeMeasResult; every ucRet is logged.
static int32_t judgeConstaResult(uint8_t ucRet, Caller caller)
{
    logLine({caller}, "s_rspDataConsta.ucRet=%u", ucRet);
    return judgeMeasResult(ucRet, caller);
}

int32_t vx63::readConstellation(uint16_t usReadCount, SingleMeasResult& result, Caller caller)
{
    s_reqDataConsta.usReadCount = usReadCount;
    logLine({caller}, "usReadCount=%d", usReadCount);

    Response& response = s_rspDataConsta;
    const int32_t vx63_err = exchange(kConstaResult, s_reqDataConsta, response, judgeConstaResult, caller);
    if (vx63_err != VX63_OK) {
        return vx63_err;
    }

    storeValues(response.as<wire::SingleResultResponse>(), result);
    // Intended: the count is taken as it came, whatever was asked for, collected or carried.
    result.CONS_NUM = response.field<uint16_t>(offsetof(wire::ConstaResponse, CONS_NUM));
    const uint32_t points = std::min<uint32_t>(result.CONS_NUM, VX63_CONSTA_POINTS_MAX);
    const uint32_t carried = std::min(points, wire::kConstaPoints);
    memcpy(result.points, response.bytes + offsetof(wire::ConstaResponse, points),
           carried * sizeof(ConstaPoint));
    memset(result.points + carried, 0, (points - carried) * sizeof(ConstaPoint));

    logLine({caller},
            "lock=%02X stat=%04X mesCond=%04X bdSys=%04X LEVEL=%u CNR=%u BER_TOTAL=%u BER_ERR=%u "
            "TSID=%04X GI=%u LAYER=%02X MOD=%04X CONS_NUM=%d",
            result.lock, result.stat, result.mesCond, result.bdSys, result.LEVEL, result.CNR,
            result.BER_TOTAL, result.BER_ERR, result.TSID, result.GI, result.LAYER, result.MOD,
            result.CONS_NUM);
    logDump("consta data", reinterpret_cast<const uint8_t*>(result.points), points * sizeof(ConstaPoint),
            caller);
    return VX63_OK;
}

#include "frame/call.h"

#include "frame/transport.h"
#include "libvx63.h"

namespace vx63 {

int32_t judgeNothing(uint8_t, Caller)
{
    return VX63_OK;
}

int32_t judge(uint8_t ucRet, Caller caller)
{
    if (ucRet != 0) {
        logLine({caller}, "ret error. vx63_err=%d", VX63_ERR_COMM);
        return VX63_ERR_COMM;
    }
    return VX63_OK;
}

int32_t judgeParameter(uint8_t ucRet, Caller caller)
{
    if (ucRet == 2) {
        logLine({caller}, "parameter error. vx63_err=%d", VX63_ERR_ARG);
        return VX63_ERR_ARG;
    }
    return judge(ucRet, caller);
}

int32_t judgeMeas(uint8_t ucRet, Caller caller)
{
    return ucRet == 7 ? static_cast<int32_t>(VX63_OK) : judgeParameter(ucRet, caller);
}

int32_t judgeMeasResult(uint8_t ucRet, Caller caller)
{
    if (ucRet == 3) {
        logLine({caller}, "power supply error. vx63_err=%d", VX63_ERR_POWER);
        return VX63_ERR_POWER;
    }
    return judgeMeas(ucRet, caller);
}

Response& judgedResponse()
{
    static constinit thread_local Response s_response = {};
    return s_response;
}

int32_t exchangeBytes(const Request& request, const void* body, uint16_t length, Response& response,
                      Rule& rule, Caller caller)
{
    memset(response.bytes, 0, sizeof response.bytes);
    const int32_t vx63_err =
        vx63_sndRcvCommon(request.ucDstId, request.usCmd, body, length, response.bytes, request.ulTimeout);
    if (vx63_err != VX63_OK) {
        logLine({caller}, "%s communication error. vx63_err=%d", request.commFailed, vx63_err);
        return vx63_err;
    }
    return rule(response.ucRet(), caller);
}

int32_t logEnd(int32_t vx63_err, Site at)
{
    logLine(at, "End. vx63_err=%d", vx63_err);
    return vx63_err;
}

} // namespace vx63

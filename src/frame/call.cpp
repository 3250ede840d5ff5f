#include "frame/call.h"

#include "frame/transport.h"
#include "libvx63.h"

namespace vx63 {

int32_t exchangeBytes(const Request& request, const void* body, uint16_t length, Response& response, Site at)
{
    const int32_t vx63_err =
        vx63_sndRcvCommon(request.ucDstId, request.usCmd, body, length, response.bytes, request.ulTimeout);
    if (vx63_err != VX63_OK) {
        logLine(at, "%s communication error. vx63_err=%d", request.commFailed, vx63_err);
    }
    return vx63_err;
}

int32_t judge(uint8_t ucRet, Site at)
{
    if (ucRet != 0) {
        logLine(at, "ret error. vx63_err=%d", VX63_ERR_COMM);
        return VX63_ERR_COMM;
    }
    return VX63_OK;
}

int32_t judgeParameter(uint8_t ucRet, Site at)
{
    if (ucRet == 2) {
        logLine(at, "parameter error. vx63_err=%d", VX63_ERR_ARG);
        return VX63_ERR_ARG;
    }
    return judge(ucRet, at);
}

int32_t judgeMeas(uint8_t ucRet, Site at)
{
    return ucRet == 7 ? static_cast<int32_t>(VX63_OK) : judgeParameter(ucRet, at);
}

int32_t judgeMeasResult(uint8_t ucRet, Site at)
{
    if (ucRet == 3) {
        logLine(at, "power supply error. vx63_err=%d", VX63_ERR_POWER);
        return VX63_ERR_POWER;
    }
    return judgeMeas(ucRet, at);
}

int32_t logEnd(int32_t vx63_err, Site at)
{
    logLine(at, "End. vx63_err=%d", vx63_err);
    return vx63_err;
}

} // namespace vx63

// The program update.
#include "device/wire.h"
#include "frame/call.h"
#include "libvx63.h"

#include <cstring>

using namespace vx63;

static constexpr Request kPrgUpdate = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x0010, .ulTimeout = 600000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_prgUpdate(const void* pUpdateReq)
{
    logLine({}, "Start.");
    if (pUpdateReq == nullptr) {
        logLine({}, "arg error. pUpdateReq=%p", pUpdateReq);
        return logEnd(VX63_ERR_ARG);
    }
    wire::UpdateRequest reqData = {};
    memcpy(reqData.ucData, pUpdateReq, sizeof reqData.ucData);

    // Intended: asked again without a pause and without a limit; the service sets the pace.
    for (;;) {
        Response response;
        const int32_t vx63_err = exchange(kPrgUpdate, reqData, response, judgeNothing);
        if (vx63_err != VX63_OK) {
            return logEnd(vx63_err);
        }
        switch (response.ucRet()) {
        case 0: // still running
            continue;
        case 3: // finished
            return logEnd(VX63_OK);
        default:
            logLine({}, "ret error. vx63_err=%d rspData.ucRet=%u", VX63_ERR_COMM, response.ucRet());
            return logEnd(VX63_ERR_COMM);
        }
    }
}

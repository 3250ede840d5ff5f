// Notices to the system service that a settings file changed.
#include "frame/call.h"
#include "libvx63.h"
#include "setfile/wire.h"

using namespace vx63;

static constexpr Request kNtfUpdateFile = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x0012, .ulTimeout = 10000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_ntfUpdateFile(uint32_t fileId)
{
    logLine({}, "Start.fileId=%u", fileId);
    if (fileId >= VX63_SET_FILE_COUNT) {
        logLine({}, "arg error. fileId=%d", static_cast<int32_t>(fileId));
        return logEnd(VX63_ERR_ARG);
    }
    const wire::ByteRequest reqData = {.ucArg = static_cast<uint8_t>(fileId)};

    return logEnd(exchange(kNtfUpdateFile, reqData, judgeParameter));
}

static constexpr Request kNtfUpdateFileIdx = {
    .ucDstId = PROC_ID_PSYS, .usCmd = 0x0013, .ulTimeout = 10000, .commFailed = "PROC_ID_PSYS"};

int32_t vx63_ntfUpdateFileIdx(uint32_t fileId, uint32_t ulIdx)
{
    logLine({}, "Start. fileId=%u, ulIdx=%u", fileId, ulIdx);
    if (fileId >= VX63_SET_FILE_COUNT) {
        logLine({}, "arg error. fileId=%d", static_cast<int32_t>(fileId));
        return logEnd(VX63_ERR_ARG);
    }
    wire::UpdateFileIdxRequest reqData = {};
    reqData.ucFileId = static_cast<uint8_t>(fileId);
    reqData.ulIdx = static_cast<uint8_t>(ulIdx); // intended: 300 goes out as 44

    return logEnd(exchange(kNtfUpdateFileIdx, reqData, judgeParameter));
}

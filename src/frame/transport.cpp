#include "frame/transport.h"

#include "frame/log.h"
#include "libvx63.h"
#include "lmsg.h"

#include <algorithm>
#include <cstring>
#include <pthread.h>
#include <unistd.h>

namespace vx63 {

constinit thread_local int32_t s_procId = -1;

namespace {

constinit thread_local wire::LibMsg s_sndMsg = {};
constinit thread_local wire::LibMsg s_rcvMsg = {};

// Answers a request that came where a response was awaited, so that its sender is not left waiting.
// Reuses the send buffer: the request in it has been sent.
int32_t refuseRequest(const wire::LibMsgHead& request, wire::LibMsgHead& refusal, uint32_t ulTimeout)
{
    refusal.ucSrcId = request.ucDstId;
    refusal.ucDstId = request.ucSrcId;
    refusal.usCmd = request.usCmd | wire::kResponseBit;
    refusal.usDataLen = 0;
    refusal.usOptOrRet = wire::kNotExpected;
    return lmsg_tsndMq(request.ucSrcId, &refusal, sizeof refusal, ulTimeout);
}

} // namespace

int32_t vx63_sndRcvCommon(uint8_t ucDstId, uint16_t usCmd, const void* pReq, uint16_t usReqLen, void* pRsp,
                          uint32_t ulTimeout)
{
    // The addresses of the thread's buffers are looked up once.
    wire::LibMsg* const pSndMsg = &s_sndMsg;
    wire::LibMsg* const pRcvMsg = &s_rcvMsg;
    const int32_t procId = s_procId;

    pSndMsg->head.ucSrcId = static_cast<uint8_t>(procId);
    pSndMsg->head.ucDstId = ucDstId;
    pSndMsg->head.usCmd = usCmd;
    pSndMsg->head.usDataLen = usReqLen;
    pSndMsg->head.usOptOrRet = wire::kAccepted;
    memcpy(pSndMsg->ucBody, pReq, usReqLen);

    int32_t lmsg_err = lmsg_tsndMq(ucDstId, pSndMsg, wire::kHeadSize + usReqLen, ulTimeout);
    if (lmsg_err == LMSG_ERR_TIMEOUT) {
        logLine({}, "lmsg_tsndMq() timeout error. lmsg_err=%d", lmsg_err);
        return VX63_ERR_COMM;
    }
    if (lmsg_err != LMSG_OK) {
        logLine({}, "lmsg_tsndMq() error. lmsg_err=%d", lmsg_err);
        return VX63_ERR_COMM;
    }

    // Whatever a message claims and does not carry is zero, never a rest of the message before it.
    memset(pRcvMsg, 0, sizeof *pRcvMsg);
    uint32_t ulMsgLen = 0;
    lmsg_err = lmsg_trcvMq(static_cast<uint8_t>(procId), pRcvMsg, sizeof *pRcvMsg, &ulMsgLen, ulTimeout);
    if (lmsg_err == LMSG_ERR_TIMEOUT) {
        logLine({}, "lmsgrcvMq() timeout error. lmsg_err=%d", lmsg_err);
        return VX63_ERR_COMM;
    }
    if (lmsg_err != LMSG_OK) {
        logLine({}, "lmsgrcvMq() error. lmsg_err=%d ucSrcId=%d", lmsg_err, procId);
        return VX63_ERR_COMM;
    }

    const wire::LibMsgHead& snd = pSndMsg->head;
    const wire::LibMsgHead& rcv = pRcvMsg->head;
    if (rcv.usCmd == (snd.usCmd | wire::kResponseBit)) {
        if (rcv.usOptOrRet != wire::kAccepted) {
            logLine({}, "ret error. usOptOrRet=%04hX", rcv.usOptOrRet);
            return VX63_ERR_COMM;
        }
        memcpy(pRsp, pRcvMsg->ucBody, std::min<size_t>(rcv.usDataLen, wire::kBodySize));
        return VX63_OK;
    }

    logLine({}, "cmd error. usCmd(Req)=%04hX, usCmd(Rsp)=%04hX", snd.usCmd, rcv.usCmd);
    logLine({}, "s_procId=%d getpid()=%d pthread_self()=%ld", procId, getpid(),
            static_cast<long>(pthread_self()));
    if ((rcv.usCmd & wire::kResponseBit) != 0) {
        logLine({},
                "lmsg_tsndMq(pSndMsg->head.ucDstId=%u, pSndMsg->head.ucSrcId=%u), pSndMsg=%p, "
                "lmsg_trcvMq(ucSrcId=%u, pRcvMsg->head.ucSrcId=%u, pRcvMsg->head.ucDstId=%u), pRcvMsg=%p",
                snd.ucDstId, snd.ucSrcId, static_cast<void*>(pSndMsg), static_cast<unsigned>(procId),
                rcv.ucSrcId, rcv.ucDstId, static_cast<void*>(pRcvMsg));
        return VX63_ERR_COMM;
    }
    logLine({},
            "lmsg_tsndMq(pSndMsg->head.ucDstId=%u, pSndMsg->head.ucSrcId=%u), "
            "lmsg_trcvMq(ucSrcId=%u, pRcvMsg->head.ucSrcId=%u, pRcvMsg->head.ucDstId=%u)",
            snd.ucDstId, snd.ucSrcId, static_cast<unsigned>(procId), rcv.ucSrcId, rcv.ucDstId);
    lmsg_err = refuseRequest(rcv, pSndMsg->head, ulTimeout);
    if (lmsg_err != LMSG_OK) {
        logLine({}, "lmsg_tsndMq() error. lmsg_err=%d", lmsg_err);
    }
    return VX63_ERR_COMM;
}

} // namespace vx63

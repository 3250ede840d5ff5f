// The one exchange with a service process: a request out, its response in.
#pragma once

#include "frame/wire.h"

#include <cstdint>

namespace vx63 {

// The process id that the calling thread speaks for; -1 until vx63_init.
extern constinit thread_local int32_t s_procId;

// Sends a request and waits, once, for its response.
//   ucDstId     process id of the service
//   usCmd       command code
//   pReq        request body of usReqLen bytes, at most wire::kBodySize
//   pRsp        receives the response body: room for wire::kBodySize bytes, written on success only
//   ulTimeout   milliseconds for the send, and again for the response
// Returns VX63_OK, or VX63_ERR_COMM after having logged what failed.
int32_t vx63_sndRcvCommon(uint8_t ucDstId, uint16_t usCmd, const void* pReq, uint16_t usReqLen, void* pRsp,
                          uint32_t ulTimeout);

} // namespace vx63

// What the multi-channel measurement shares with the channel scan: all but the kind of the last part.
#pragma once

#include "frame/log.h"
#include "libvx63.h"

namespace vx63 {

// Registers the channels in parts; the last part starts the run.
//   ucLastKind  wire::kKindMulti or wire::kKindScan
// Returns a result code; what failed is logged.
int32_t vx63_startMultiMeasCommon(uint8_t ucDispType, const MultiMeasReg* pReg, uint8_t ucLastKind);

// Stops the run. Returns a result code.
int32_t stopMulti(uint8_t ucDispType, Caller caller = {});

// Reads the latest values of one channel. Returns a result code; the record is written on success only.
int32_t readMulti(int32_t sIndex, MultiMeasResult* pResult, Caller caller = {});

} // namespace vx63

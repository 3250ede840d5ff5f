// The constellation read behind vx63_getSingleMeasResult.
#pragma once

#include "frame/log.h"
#include "libvx63.h"

namespace vx63 {

// Reads the latest values and the constellation points. Returns a result code; the record is written on
// success only.
int32_t readConstellation(uint16_t usReadCount, SingleMeasResult& result, Caller caller = {});

} // namespace vx63

// What the single measurement shares with the measurements built on it: constellation and priority.
#pragma once

#include "frame/log.h"
#include "libvx63.h"
#include "meas/wire.h"

namespace vx63 {

// Starts a single measurement. Returns a result code; what failed is logged.
int32_t vx63_startSingleMeasCommon(uint8_t ucDispType, const MeasCondition* pCondition);

// Copies the values of a response into the record. The record's other fields keep what they hold.
void storeValues(const wire::SingleResultResponse& rspData, SingleMeasResult& result);

// Logs the values that storeValues stores.
void logValues(const SingleMeasResult& result, Caller caller = {});

} // namespace vx63

// The latest values of a single measurement, which three reads share: plain, constellation, priority.
#pragma once

#include "frame/log.h"
#include "libvx63.h"
#include "meas/wire.h"

namespace vx63 {

// Copies the values of a response into the record. The record's other fields keep what they hold.
void storeValues(const wire::SingleResultResponse& rspData, SingleMeasResult& result);

// Logs the values that storeValues stores.
void logValues(const SingleMeasResult& result, Caller caller = {});

} // namespace vx63

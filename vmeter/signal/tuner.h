// What the tuner is taken for, one thing at a time.
#pragma once

#include "model/meter.h"

namespace vmeter {

// Takes the tuner for a run on one channel, in place of the one that runs, and begins to search. The start
// must be usable.
void startRun(Meter& meter, Run run, const vx63::wire::StartRequest& start);

// Ends whatever runs on the tuner. The power supply stays as it is at that moment.
void stopRun(Meter& meter);

} // namespace vmeter

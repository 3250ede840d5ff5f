// What is compared (compare...), and what is told at each step of growth (grow...).
#pragma once

#include "paired.h"

namespace bench {

void compareExchanges(Runner& runner);
void compareLog(Runner& runner);
void compareOperations(Runner& runner);
void compareOthers(Runner& runner);
void compareSettingsFiles(Runner& runner);
void compareProcesses(Runner& runner);   // outside of any namespaces, for it makes its own
void compareMeasurement(Runner& runner); // in a virtual meter
void growLog(Runner& runner);
void growSettingsFiles(Runner& runner);
void growThreads(Runner& runner);
void callMeter(Runner& runner);

} // namespace bench

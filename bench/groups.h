// What is compared, a file a group.
#pragma once

#include "paired.h"

namespace bench {

void compareExchanges(Runner& runner);
void compareLog(Runner& runner);
void compareOperations(Runner& runner);
void compareOthers(Runner& runner);
void compareSettingsFiles(Runner& runner);
void compareThreads(Runner& runner);
void compareProcesses(Runner& runner);   // outside of any namespaces, for it makes its own
void compareMeasurement(Runner& runner); // in a virtual meter

} // namespace bench

// What a developer would take instead of the library, a file each. A function that is declared weak is null
// where its library was not found.
#pragma once

#include "paired.h"

namespace bench {

void compareOtherExchanges(Runner& runner);
void compareOtherLogs(Runner& runner);
void compareOtherReaders(Runner& runner);

void tellLeftOut(const char* name, const char* package);

} // namespace bench

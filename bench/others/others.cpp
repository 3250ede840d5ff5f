#include "others/others.h"

#include "groups.h"

#include <cstdio>

namespace bench {

void tellLeftOut(const char* name, const char* package)
{
    std::fprintf(stderr, "bench: no %s (%s): left out\n", name, package);
}

void compareOthers(Runner& runner)
{
    compareOtherExchanges(runner);
    compareOtherLogs(runner);
    compareOtherReaders(runner);
}

} // namespace bench

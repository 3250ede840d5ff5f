// A client of a virtual meter, one of several side by side: bench/growth starts them. Calls as fast as it
// can, and tells how many calls fell between two moments.
#include "groups.h"
#include "libvx63.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace bench {
namespace {

void measure()
{
    MeasStatus status;
    if (vx63_getMeasStatus(&status) != VX63_OK) {
        std::fprintf(stderr, "vx63-bench: vx63_getMeasStatus failed: the log says why\n");
        std::exit(1);
    }
}

int64_t now()
{
    timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * int64_t{1'000'000'000} + time.tv_nsec;
}

} // namespace

// Says "ready", reads the two moments in nanoseconds of CLOCK_MONOTONIC, and says the calls.
void callMeter(Runner&)
{
    vx63_init(1);
    measure();
    std::puts("ready");
    std::fflush(stdout);
    int64_t start = 0;
    int64_t end = 0;
    if (std::scanf("%" SCNd64 " %" SCNd64, &start, &end) != 2)
        return; // who started it has given up
    while (now() < start)
        measure();
    int64_t made = 0;
    for (; now() < end; ++made)
        measure();
    std::printf("%" PRId64 "\n", made);
}

} // namespace bench

// A wall clock that anybody may set: each look at it finds it up to a year before or after the last one, at
// times beyond 2038 and before 1970. Preloaded, so that a whole meter has it; other clocks go on as they are.
#include <cstdint>
#include <ctime>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr int64_t kYear = 366 * 86400;

// Seconds to add: a walk of its own in each process.
int64_t step()
{
    static uint64_t s_state = static_cast<uint64_t>(getpid()) * 2654435761U + 1;
    static int64_t s_offset = 0;
    s_state = s_state * 6364136223846793005U + 1442695040888963407U;
    s_offset += static_cast<int64_t>((s_state >> 33) % (2 * kYear)) - kYear;
    if (s_offset > 60 * kYear || s_offset < -60 * kYear)
        s_offset = 0;
    return s_offset;
}

} // namespace

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept
{
    const long result = syscall(SYS_clock_gettime, clock, time);
    if (result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE))
        time->tv_sec += step();
    return static_cast<int>(result);
}

extern "C" int gettimeofday(timeval* __restrict time, void* __restrict) noexcept
{
    timespec now;
    const int result = clock_gettime(CLOCK_REALTIME, &now);
    *time = {now.tv_sec, now.tv_nsec / 1000};
    return result;
}

extern "C" time_t time(time_t* where) noexcept
{
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    if (where != nullptr)
        *where = now.tv_sec;
    return now.tv_sec;
}

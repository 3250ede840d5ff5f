// What libvx63.so calls that leaves the process: libc's system calls, the platform's. Stand-ins count the
// calls of a thread that asks for it. What they stand in for happens all the same, but for sync(), a pause,
// the removal of settings files, and the platform.
#pragma once

#include "support/kernel_calls.h"

#include <cstdint>
#include <ctime>
#include <functional>

namespace vx63test {

// How the services answer.
enum class Service {
    Accepts,
    Refuses,     // ucRet is 1
    IsSilent,    // the wait for an answer ends by its time-out
    IsFull,      // so does the sending
    IsOneBehind, // answers another request
    AsksInstead, // sends a request
};
inline Service s_service = Service::Accepts;

// CLOCK_REALTIME while calls are counted, and 42999 ns: microseconds with leading zeros.
inline time_t s_seconds = 1234567890;

// The calls that this thread makes meanwhile. The heap is not used.
Calls standInCalls(const std::function<void()>& work);

} // namespace vx63test

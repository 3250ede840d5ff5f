// What stands between liblmsg.so and libc in these tests: an executable's functions win over libc's. Left
// alone, every hook passes its calls on.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

namespace hooks {

// mq_open() fails with this errno unless it is 0.
inline std::atomic<int> s_openError{0};

// How often ppoll() was called.
inline std::atomic<int> s_waits{0};

enum class Wait {
    Real,      // ppoll() as it is
    Event,     // ppoll() without a time: only an event ends it
    Over,      // returns 0 at once: what passed is up to the hook
    Interrupt, // fails at once with EINTR
};

// Decides about each ppoll(); gets the time that it was given. Set it before there are threads.
inline std::function<Wait(int64_t givenNs)> s_onWait;

// What happens right after a dup3().
inline std::function<void()> s_afterDup3;

// Whether CLOCK_MONOTONIC stands still but for s_passedNs.
inline std::atomic<bool> s_frozen{false};
inline std::atomic<int64_t> s_passedNs{0};

// Whether CLOCK_REALTIME steps by a day, to and fro, at every look.
inline std::atomic<bool> s_realtimeSteps{false};

// Called before mq_getattr(), fstat(), openat(), readlinkat(), mq_send(), mq_receive() and ppoll() with their
// names; what it gives, unless 0, is the errno that the call fails with.
inline std::function<int(const char* call)> s_onCall;

// Puts every hook back.
void reset();

} // namespace hooks

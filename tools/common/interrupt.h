// Interruption by Ctrl-C, SIGTERM or a closed terminal, for commands that must clean up first.
#pragma once

#include <chrono>

namespace tool {

// From now on the first of these signals only sets what interruption() returns, and a second one ends the
// program at once. A signal that the caller of the program ignores stays ignored.
//   notice  shown on a terminal's stderr when the first signal arrives
void catchInterruption(const char* notice);

// From now on a second signal does nothing, since there is something to put right first: a terminal that
// shows keys no longer. With endAtOnce() the next one but SIGHUP ends the program at once, and so does one
// that came meanwhile.
void holdSecondSignal();
void endAtOnce();

// The notice of the commands that measure.
inline constexpr const char* kStoppingNotice =
    "\nvx63: stopping the measurement; Ctrl-C again ends at once\n";

// The signal that arrived, or 0.
int interruption();

// Waits for the time, a signal, or input on one of the descriptors (-1: none), whichever comes first. Throws
// BrokenPipe when the reader of standard output goes away.
void waitFor(std::chrono::milliseconds time, int fd = -1, int other = -1);

} // namespace tool

// The diagnostic log: one line per statement, each by itself (status, open, write, close), so that lines
// of several threads and processes interleave whole and survive any crash.
#pragma once

#include <cstdint>

namespace vx63 {

// Who logs: the function that an engineer knows and the line of the statement. As a default argument it
// names the caller, so a shared routine takes one and logs in its caller's name.
struct Site {
    const char* function;
    int line;
    constexpr Site(const char* callerFunction = __builtin_FUNCTION(), int callerLine = __builtin_LINE())
        : function(callerFunction), line(callerLine)
    {}
};

// Writes one line. Never fails for the caller: a line that cannot be written is left out.
[[gnu::format(printf, 2, 3)]] void logLine(const Site& at, const char* format, ...);

// The same into the key log, a file of its own under the same rules.
[[gnu::format(printf, 2, 3)]] void logKeyLine(const Site& at, const char* format, ...);

// Writes a byte buffer as a hex dump: a title line, then 16 bytes a line. Composes it in gLibDumpLog.
void logDump(const char* label, const uint8_t* bytes, uint32_t count, Site at = Site());

} // namespace vx63

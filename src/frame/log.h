// The diagnostic log: one line per statement, each by itself (status, open, write, close), so that lines
// of several threads and processes interleave whole and survive any crash.
#pragma once

#include <cstdint>

namespace vx63 {

// The function in whose name a line is logged: one that an engineer knows. As a default argument it is the
// function that calls; a routine that several share takes one and hands it on.
struct Caller {
    const char* function;
    constexpr Caller(const char* callerFunction = __builtin_FUNCTION()) : function(callerFunction) {}
};

// What a line says of its statement: {} in the name of the function in which it stands, {caller} in its
// caller's. The line number is the statement's own.
struct Site {
    const char* function;
    int line;
    constexpr Site(Caller caller = {}, int statementLine = __builtin_LINE())
        : function(caller.function), line(statementLine)
    {}
};

// Writes one line. Never fails for the caller: a line that cannot be written is left out.
[[gnu::format(printf, 2, 3)]] void logLine(Site at, const char* format, ...);

// The same into the key log, a file of its own under the same rules.
[[gnu::format(printf, 2, 3)]] void logKeyLine(Site at, const char* format, ...);

// Writes a byte buffer as a hex dump: a title line, then 16 bytes a line. Composes it in gLibDumpLog.
void logDump(const char* label, const uint8_t* bytes, uint32_t count, Caller caller = {});

} // namespace vx63

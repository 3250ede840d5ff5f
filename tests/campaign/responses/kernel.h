// What the library calls of libc that leaves the process: stands in for it while an operation runs, so that
// no log is written and every line is looked at.
#pragma once

#include "input.h"

#include <cstdint>
#include <string_view>

namespace responses {

struct Kernel {
    // How it is found; drawn for each call of an operation.
    enum Log : uint8_t { kFile, kMissing, kFull, kFolder, kRefused, kDiskFull };
    Log log = kFile;
    int lockedFor = 0;   // tries for which the lock of a full log is held by another
    int removeError = 0; // errno of the removal of a settings file; 0: it succeeds

    // What the call has done.
    std::string_view function; // the operation
    bool takesTexts = false;   // texts from outside stand in its lines
    int statements = 0;
    int lines = 0;
    int keyLines = 0;
    int errors = 0; // lines that tell of a failure
    int removals = 0;
    bool unsynced = false; // something was written or removed since the last sync
    char removed[256] = "";
    char first[64] = ""; // messages: of the first line, of the last
    char last[64] = "";

    bool isWritable() const { return log == kFile || log == kMissing || log == kFull; }
};
inline Kernel s_kernel;

// Whether this thread runs an operation: everything else in the process, the fuzzer's own thread among it,
// reaches the real functions.
inline thread_local bool s_inside = false;
inline int64_t s_heapCalls = 0; // while one runs

// Once, before the first operation and behind what the fuzzer itself prepares.
void watchOperations();

// Before an operation; the input tells how the log is.
void prepareKernel(Input& input, std::string_view function, bool takesTexts);

// Whether no statement of the log was left in the middle.
bool isLogAtRest();

} // namespace responses

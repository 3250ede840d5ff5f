// Another program, run to its end.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

struct Ended {
    std::string output, errors; // what it wrote to stdout and stderr
    int exitCode = 0;           // kExitSignal plus the number of the signal that ended it
    bool timedOut = false;
    bool interrupted = false; // by a signal that came while it ran
};

// What takes too long, or is interrupted, is killed. Nothing where there is no such program on the PATH. No
// shell takes part. Throws Failure.
//   words  its name and its arguments
std::optional<Ended> runProgram(const std::vector<std::string>& words, std::string_view input,
                                std::chrono::milliseconds timeout);

} // namespace tool

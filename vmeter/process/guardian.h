// Between a program that starts others and those others: nothing of them is left, whichever of them is killed
// at whatever moment.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace vmeter {

// Makes this process, a child that was forked for it, the guardian of a program: runs it, kills what it left
// running once it has ended, cleans up and ends with its exit status, 128 + n after signal n; kExitNotFound
// or kExitNotExecutable if there is no such program; kExitFailure, not 0, if `cleanUp` gives false. It
// outlives the caller, and is never told that the caller died: the program has to see that by itself.
[[noreturn]] void guard(const std::vector<std::string>& program, const std::function<bool()>& cleanUp = {});

// From now on, whatever descends from this process comes to it when its own parent dies.
void adoptOrphans();

// Kills all that descends from this process, which adopts orphans, and waits for its end.
void killDescendants();

} // namespace vmeter

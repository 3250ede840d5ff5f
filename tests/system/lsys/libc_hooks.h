// What stands between liblsys.so and libc in these tests: an executable's functions win over libc's. Left
// alone, every hook passes its calls on.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <spawn.h>
#include <string>

namespace hooks {

// Called before each system call on files with its name; what it gives, unless 0, is the errno that the call
// fails with.
inline std::function<int(const std::string& call)> s_onCall;

// How many bytes a write() takes at most.
inline size_t s_writeLimit = SIZE_MAX;

// How many sets of signals were emptied: what lies on a stack is often 0 by itself.
inline std::atomic<int> s_emptiedSets{0};

// Called before each posix_spawn().
inline std::function<void(const posix_spawnattr_t& attributes)> s_onSpawn;

// Puts every hook back.
void reset();

} // namespace hooks

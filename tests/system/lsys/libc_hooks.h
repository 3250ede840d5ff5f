// What stands between liblsys.so and libc in these tests: an executable's functions win over libc's. Left
// alone, every hook passes its calls on.
#pragma once

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

// Called before each posix_spawn().
inline std::function<void(const posix_spawnattr_t& attributes)> s_onSpawn;

// Puts every hook back.
void reset();

} // namespace hooks

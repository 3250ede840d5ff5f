// The system calls of a piece of work, whatever makes them, as the kernel sees them. Where a process can
// trace another: not under qemu-arm.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace vx63test {

// How often each call was made, by its name in libc; "system call N" for what nobody is expected to make.
using Calls = std::map<std::string, int>;

// Runs the work in a child process, which sees this one's memory as it is and leaves it so. What the work
// itself fails at is not noticed. before is told here of each call, before the kernel makes it.
//   nullopt  this process may not trace another; with CI=true the test fails
std::optional<Calls> kernelCalls(const std::function<void()>& work,
                                 const std::function<void(const std::string& name)>& before = {});

} // namespace vx63test

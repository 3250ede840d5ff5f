// The library's log as a test sees it. Test programs run with a /var/log of their own (tests/isolated).
#pragma once

#include <string>
#include <vector>

namespace vx63test {

inline constexpr char kLogPath[] = "/var/log/libvx63.cpp.txt";

// Removes whatever is at the log's path.
void removeLog();

// The lines of the log, whole.
std::vector<std::string> logLines();

// The lines of the log as "FUNCTION: MESSAGE"; fails the test where a line has not the log's shape.
std::vector<std::string> logMessages();

} // namespace vx63test

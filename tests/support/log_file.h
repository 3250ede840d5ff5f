// The library's logs as a test sees them. Test programs run with a /var/log of their own (tests/isolated).
#pragma once

#include <string>
#include <vector>

namespace vx63test {

inline constexpr char kLogPath[] = "/var/log/libvx63.cpp.txt";
inline constexpr char kKeyLogPath[] = "/var/log/libvx63_key.txt";

// Removes whatever is at the paths of both logs.
void removeLog();

// The lines of a log, whole.
std::vector<std::string> logLines(const char* path = kLogPath);

// The lines of a log as "FUNCTION: MESSAGE"; fails the test where a line has not the log's shape.
std::vector<std::string> logMessages(const char* path = kLogPath);

// The source lines that the lines of the log carry.
std::vector<int> logSourceLines();

} // namespace vx63test

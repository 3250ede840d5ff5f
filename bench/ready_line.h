// The floor of the log: the system calls of a line, with a text that is ready.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

inline constexpr char kLogPath[] = "/var/log/libvx63.cpp.txt";

void writeReadyLine(const std::string& line);

// The lines that a call writes, each with its newline.
std::vector<std::string> linesOf(const std::function<void()>& call);

// While it lives the log lies below `folder`.
class LogElsewhere {
public:
    explicit LogElsewhere(const std::string& folder);
    ~LogElsewhere();
    LogElsewhere(const LogElsewhere&) = delete;
    LogElsewhere& operator=(const LogElsewhere&) = delete;

private:
    std::string m_file;
};

} // namespace bench

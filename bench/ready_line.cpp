#include "ready_line.h"

#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace bench {

void writeReadyLine(const std::string& line)
{
    struct stat status;
    stat(kLogPath, &status);
    const int file = open(kLogPath, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, 0666);
    timespec time;
    clock_gettime(CLOCK_REALTIME, &time);
    [[maybe_unused]] const ssize_t written = write(file, line.data(), line.size());
    close(file);
}

std::vector<std::string> linesOf(const std::function<void()>& call)
{
    [[maybe_unused]] const int result = truncate(kLogPath, 0);
    call();
    std::ifstream log(kLogPath);
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);)
        lines.push_back(line + '\n');
    return lines;
}

LogElsewhere::LogElsewhere(const std::string& folder) : m_file(folder + "/log.txt")
{
    unlink(kLogPath);
    [[maybe_unused]] const int result = symlink(m_file.c_str(), kLogPath);
}

LogElsewhere::~LogElsewhere()
{
    unlink(kLogPath);
    unlink(m_file.c_str());
}

} // namespace bench

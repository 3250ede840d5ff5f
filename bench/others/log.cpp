// One line of a log, by the library and by others, which keep their file open.
#include "others/log.h"

#include "inside.h"
#include "others/others.h"
#include "ready_line.h"
#include "require.h"

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <memory>
#include <unistd.h>

namespace bench {
namespace {

// No larger than the library's log becomes.
Body keptSmall(const std::string& path, const Body& line)
{
    constexpr int kLines = 20000;
    return [path, line, count = 0]() mutable {
        line();
        if (++count % kLines == 0)
            require(truncate(path.c_str(), 0) == 0, "truncate");
    };
}

void compareLines(Runner& runner, const std::string& folder, const std::string& place)
{
    const std::string ready = linesOf(inside_logEnd).at(0);
    const Body floor = keptSmall(kLogPath, [ready] { writeReadyLine(ready); });
    const auto compare = [&](const std::string& what, const Body& line) {
        runner.compare({what + place, "stat, open, clock_gettime, write, close"}, floor, line);
    };
    compare("a line of libvx63", inside_logEnd);

    const std::string other = folder + "/libvx63.others.txt";
    // Their file stays open: a removed log is not noticed, and a long line is several writes.
    compare("a line by fprintf and fflush", keptSmall(other, stdioLine(other)));
    if (spdlogLine != nullptr)
        compare("a line by spdlog", keptSmall(other, spdlogLine(other)));
    std::filesystem::remove(other);
}

} // namespace

Body stdioLine(const std::string& path)
{
    const std::shared_ptr<FILE> file(std::fopen(path.c_str(), "ae"), [](FILE* open) { std::fclose(open); });
    require(file != nullptr, path.c_str());
    return [file] {
        timespec now;
        tm parts;
        clock_gettime(CLOCK_REALTIME, &now);
        localtime_r(&now.tv_sec, &parts);
        const int written = std::fprintf(
            file.get(), "%04d-%02d-%02d %02d:%02d:%02d.%06ld : vx63-bench : %s(%d) %s() : End. vx63_err=%d\n",
            parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec,
            now.tv_nsec / 1000, "libvx63.cpp", __LINE__, "vx63_startSingleMeas", 0);
        require(written > 0 && std::fflush(file.get()) == 0, "fprintf");
    };
}

void compareOtherLogs(Runner& runner)
{
    if (spdlogLine == nullptr)
        tellLeftOut("spdlog", "libspdlog-dev");
    compareLines(runner, "/var/log", ", in memory");
    const std::string folder = std::filesystem::current_path();
    const LogElsewhere disk(folder);
    compareLines(runner, folder, ", on disk");
}

} // namespace bench

// One line of the log.
#include "groups.h"
#include "inside.h"
#include "ready_line.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace bench {
namespace {

void compareLines(Runner& runner, const std::string& place)
{
    const auto compare = [&](const std::string& what, void (*line)()) {
        const std::string ready = linesOf(line).at(0);
        runner.compare(
            {what + place, "stat, open, clock_gettime, write, close", 1.05},
            [ready] { writeReadyLine(ready); }, line);
    };
    compare("a line without values", inside_logStart);
    compare("a line with a value", inside_logEnd);
}

// A log that is filled, in parts; beyond its limit the next line starts it anew.
constexpr size_t kLimit = 0x200000;
constexpr size_t kParts = 8;

struct Filling {
    std::array<double, kParts> line; // nanoseconds, in each part
    double startingAnew;             // nanoseconds: the one line beyond the limit
};

double nanosecondsOf(const Body& body)
{
    const auto start = std::chrono::steady_clock::now();
    body();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

void resize(off_t size)
{
    [[maybe_unused]] const int result = truncate(kLogPath, size);
}

Filling fill(size_t lineSize, const Body& line, const Body& lineStartingAnew)
{
    Filling filling;
    resize(0);
    size_t size = 0;
    for (size_t part = 0; part < kParts; ++part) {
        size_t lines = 0;
        const double all = nanosecondsOf([&] {
            for (; size <= kLimit * (part + 1) / kParts; size += lineSize, ++lines)
                line();
        });
        filling.line[part] = all / static_cast<double>(lines);
    }
    filling.startingAnew = nanosecondsOf(lineStartingAnew);
    if (std::filesystem::file_size(kLogPath) != lineSize) {
        std::fprintf(stderr, "bench: %s is not started anew where it should be\n", kLogPath);
        std::exit(1);
    }
    return filling;
}

void tellFillings(const std::string& series, const std::vector<Filling>& fillings)
{
    constexpr double kKibibyte = 1024;
    constexpr double kMicrosecond = 1000;
    const auto told = [&](double at, const auto& value) {
        std::vector<double> values;
        for (const Filling& filling : fillings)
            values.push_back(value(filling) / kMicrosecond);
        tell("log", at / kKibibyte, series, median(values));
    };
    for (size_t part = 0; part < kParts; ++part) {
        const double middle = (static_cast<double>(part) + 0.5) * kLimit / kParts;
        told(middle, [part](const Filling& filling) { return filling.line[part]; });
    }
    told(kLimit, [](const Filling& filling) { return filling.startingAnew; });
}

void fillLogs(Runner& runner, const std::string& place)
{
    const std::string ready = linesOf(inside_logStart).at(0);
    const auto writeReady = [&ready] { writeReadyLine(ready); };
    const auto writeReadyAnew = [&] {
        resize(0);
        writeReady();
    };
    std::vector<Filling> ours;
    std::vector<Filling> floors;
    for (int round = 0; round < (runner.brief() ? 1 : 20); ++round) {
        ours.push_back(fill(ready.size(), inside_logStart, inside_logStart));
        floors.push_back(fill(ready.size(), writeReady, writeReadyAnew));
    }
    tellFillings("a line" + place, ours);
    tellFillings("floor" + place, floors);
}

} // namespace

void compareLog(Runner& runner)
{
    compareLines(runner, ", in memory");
    const LogElsewhere disk(std::filesystem::current_path());
    compareLines(runner, ", on disk");
}

void growLog(Runner& runner)
{
    fillLogs(runner, ", in memory");
    const LogElsewhere disk(std::filesystem::current_path());
    fillLogs(runner, ", on disk");
}

} // namespace bench

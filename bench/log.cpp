// One line of the log.
#include "groups.h"
#include "inside.h"
#include "ready_line.h"

#include <filesystem>

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

} // namespace

void compareLog(Runner& runner)
{
    compareLines(runner, ", in memory");
    const LogElsewhere disk(std::filesystem::current_path());
    compareLines(runner, ", on disk");
}

} // namespace bench

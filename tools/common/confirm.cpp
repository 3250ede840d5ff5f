#include "common/confirm.h"

#include "common/failure.h"
#include "common/text.h"

#include <cstdio>
#include <unistd.h>

namespace tool {

namespace {

// The next line of standard input; what was typed before its end counts.
std::string readLine()
{
    std::string line;
    char letter = 0;
    while (read(STDIN_FILENO, &letter, 1) == 1 && letter != '\n')
        line += letter;
    return line;
}

} // namespace

void confirm(bool yes, const std::string& question)
{
    if (yes)
        return;
    if (isatty(STDIN_FILENO) != 1 || isatty(STDERR_FILENO) != 1)
        throw Failure(kExitDeclined, "nothing was done", "there is no terminal to ask on", "give --yes");
    std::fprintf(stderr, "%s [y/N] ", printable(question).c_str());
    const std::string answer = readLine();
    if (answer != "y" && answer != "Y" && answer != "yes")
        throw Failure(kExitDeclined, "nothing was done", "not confirmed", "answer y, or give --yes");
}

} // namespace tool

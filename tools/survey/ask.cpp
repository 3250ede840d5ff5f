#include "survey/ask.h"

#include "cli/columns.h"
#include "common/interrupt.h"
#include "common/output.h"
#include "common/terminal.h"
#include "common/text.h"

#include <chrono>
#include <optional>
#include <termios.h>
#include <unistd.h>

namespace tool {

namespace {

// Nothing at the end of the input and after an interruption.
std::optional<std::string> readLine()
{
    std::string line;
    for (char letter = 0;; line += letter) {
        waitFor(std::chrono::hours(24), STDIN_FILENO);
        if (interruption() != 0 || read(STDIN_FILENO, &letter, 1) != 1)
            return std::nullopt;
        if (letter == '\n')
            return line;
    }
}

} // namespace

bool canAsk()
{
    return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

Answer askFor(const std::string& place)
{
    tcflush(STDIN_FILENO, TCIFLUSH);
    for (;;) {
        const std::string question = printable(place) + ": connect the meter, then Enter; s skips, q ends";
        std::string shown;
        for (const std::string& line : wrapped(question, cli::columnsOf(STDERR_FILENO).value_or(80) - 1))
            shown += (shown.empty() ? "" : "\n") + line;
        printError(shown + " ");
        const auto line = readLine();
        if (!line && interruption() == 0)
            printError("\n"); // at the end of the input nobody ended the line
        if (!line || *line == "q")
            return Answer::end;
        if (*line == "s")
            return Answer::skip;
        if (line->empty())
            return Answer::go;
    }
}

} // namespace tool

// The report on paper: weasyprint prints the page.
#include "common/failure.h"
#include "common/program.h"
#include "common/text.h"
#include "survey/reports.h"

namespace tool {

std::string reportPdf(const std::string& html)
{
    constexpr std::chrono::minutes kPatience{10};
    const std::string what = "report.pdf is left out";
    const auto ended =
        runProgram({"weasyprint", "--quiet", "--encoding", "utf-8", "-", "-"}, html, kPatience);
    if (!ended)
        throw Failure(kExitIncomplete, what, "weasyprint is not installed",
                      "install it, then 'vx63 survey report DIR', or print report.html");
    if (ended->interrupted)
        throw Failure(kExitIncomplete, what, "it was interrupted", "'vx63 survey report DIR' writes it");
    if (ended->timedOut)
        throw Failure(kExitIncomplete, what, "weasyprint takes more than 10 minutes", "print report.html");
    if (ended->exitCode != 0 || !ended->output.starts_with("%PDF-")) {
        // The last line of what it says tells what is wrong.
        std::string said = ended->errors;
        said.erase(said.find_last_not_of(" \n") + 1);
        said.erase(0, said.rfind('\n') + 1);
        throw Failure(kExitIncomplete, what,
                      format("weasyprint ended with %d", ended->exitCode) + (said.empty() ? "" : ", " + said),
                      "print report.html");
    }
    return ended->output;
}

} // namespace tool

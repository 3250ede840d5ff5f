// vx63 survey report: write the reports of a survey anew.
#include "common/failure.h"
#include "common/interrupt.h"
#include "common/output.h"
#include "common/text.h"
#include "survey/reports.h"
#include "survey/results.h"
#include "survey/subcommands.h"
#include "survey/words.h"

#include <filesystem>
#include <string>

namespace tool {

namespace {

struct Options {
    std::string folder;
};

int report(const Options& options)
{
    const std::string& folder = options.folder;
    if (std::error_code none; !std::filesystem::is_directory(folder, none))
        throw Failure(kExitNoInput, "cannot write the reports of " + folder, "it is no folder",
                      "name the folder of a survey");
    const SurveyResults results = readResults(folder);
    catchInterruption("\nvx63: stopping; Ctrl-C again ends at once\n");
    writeReports(results, folder);
    if (interruption() != 0)
        return kExitSignal + interruption();
    print(printable(summaryText(outcomeOf(results))) + "\n");
    for (const char* name : {kReportHtml, kReportPdf, kReportJunit, kReportCsv}) {
        const auto path = std::filesystem::path(folder) / name;
        if (std::error_code none; std::filesystem::exists(path, none))
            print(printable(path.string()) + "\n");
    }
    return kExitSuccess;
}

} // namespace

void addSurveyReport(CommandLine& survey)
{
    survey.addCommand("report", "Write the reports of a survey anew", "vx63 survey report north-street",
                      report, [](CommandLine& line, Options& options) {
                          line.text("DIR", options.folder, "DIR", "Folder of a survey").required();
                      });
}

} // namespace tool

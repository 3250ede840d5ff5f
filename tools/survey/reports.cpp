#include "survey/reports.h"

#include "common/failure.h"
#include "common/file.h"
#include "common/output.h"

#include <filesystem>

namespace tool {

void writeReports(const SurveyResults& results, const std::string& dir)
{
    const auto pathOf = [&](const char* name) { return (std::filesystem::path(dir) / name).string(); };
    const auto write = [&](const char* name, const std::string& bytes) {
        replaceWholeFile(pathOf(name), bytes, "cannot write " + pathOf(name),
                         "make the folder writable, or copy results.jsonl to another one");
    };
    const SurveyOutcome outcome = outcomeOf(results);
    const std::string html = reportHtml(results, outcome);
    write(kReportHtml, html);
    write(kReportJunit, junitXml(results, outcome));
    write(kReportCsv, readingsCsv(outcome));
    std::string pdf;
    try {
        Progress progress;
        progress.show("Printing " + pathOf(kReportPdf));
        pdf = reportPdf(html);
    } catch (const Failure& failure) {
        std::error_code none;
        std::filesystem::remove(pathOf(kReportPdf), none); // an older one would tell something else
        return complain(failure.what());
    }
    write(kReportPdf, pdf);
}

} // namespace tool

// The reports of a survey: the same results as a page, on paper, for build servers and for spreadsheets.
#pragma once

#include "survey/outcome.h"
#include "survey/survey.h"

#include <string>
#include <string_view>

namespace tool {

inline constexpr const char* kReportHtml = "report.html";
inline constexpr const char* kReportPdf = "report.pdf";
inline constexpr const char* kReportJunit = "junit.xml";
inline constexpr const char* kReportCsv = "readings.csv";

// Writes all of them into the folder, each whole or not at all. What weasyprint does not make is left out
// with a complaint. Throws Failure.
void writeReports(const SurveyResults& results, const std::string& dir);

// ---- one by one ----

std::string reportHtml(const SurveyResults& results, const SurveyOutcome& outcome);
std::string junitXml(const SurveyResults& results, const SurveyOutcome& outcome);
std::string readingsCsv(const SurveyOutcome& outcome);

// The page as weasyprint prints it. Throws Failure where it does not.
std::string reportPdf(const std::string& html);

extern const std::string_view kReportStyle; // of the page, in CSS

} // namespace tool

// Reads any text as the results of a survey: what is accepted is the same when it is written and read again,
// and comes to reports that hold no control characters; a file that a survey goes on with keeps its whole
// lines.
#include "told.h"

#include "survey/outcome.h"
#include "survey/reports.h"
#include "survey/results.h"
#include "survey/results_file.h"
#include "survey/words.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

using held::require;
using namespace tool;

namespace {

// A folder for what is gone on with; it goes with the process.
const std::string& folder()
{
    static const std::string made = [] {
        std::string pattern =
            access("/dev/shm", W_OK) == 0 ? "/dev/shm/fuzz_results.XXXXXX" : "/tmp/fuzz_results.XXXXXX";
        require(mkdtemp(pattern.data()) != nullptr, "no folder");
        return pattern;
    }();
    static const int cleared = atexit([] {
        std::error_code ignored;
        std::filesystem::remove_all(folder(), ignored);
    });
    require(cleared == 0, "atexit");
    return made;
}

std::string written(const SurveyResults& results)
{
    std::string text = surveyLine(results.survey);
    for (const SurveyReading& reading : results.readings)
        text += readingLine(reading);
    return text;
}

void judgeReport(const std::string& report)
{
    require(std::ranges::none_of(
                report, [](unsigned char c) { return (c < 0x20 && c != '\n' && c != '\t') || c == 0x7F; }),
            "a report holds control characters", report);
}

void judgeTornLine(const std::string& text)
{
    const std::string path = folder() + "/" + kResultsFile;
    std::ofstream(path, std::ios::binary) << text;
    {
        ResultsFile file(folder());
        file.add("{}\n");
    }
    std::ifstream file(path, std::ios::binary);
    const std::string left{std::istreambuf_iterator<char>(file), {}};
    const size_t last = text.rfind('\n');
    require(left == (last == std::string::npos ? "" : text.substr(0, last + 1)) + "{}\n",
            "a survey that goes on has changed what was there", text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (size % 16 == 0)
        judgeTornLine(text);
    SurveyResults results;
    try {
        results = readResults(held::File(text).path());
    } catch (const Failure& failure) {
        held::judgeFailure(failure);
        require(failure.code() == kExitData, "another code", failure.what());
        return 0;
    }
    const std::string once = written(results);
    const SurveyResults again = readResults(held::File(once).path());
    require(again.strangers == 0 && written(again) == once, "the results come back otherwise", once);
    const SurveyOutcome outcome = outcomeOf(results);
    require(outcome.counts.all >= outcome.counts.measured &&
                outcome.counts.measured >=
                    outcome.counts.passed + outcome.counts.marginal + outcome.counts.failed,
            "numbers of channels that cannot be", text);
    judgeReport(junitXml(results, outcome));
    judgeReport(reportHtml(results, outcome));
    const std::string csv = readingsCsv(outcome);
    require(std::ranges::count(csv, '\n') == static_cast<ptrdiff_t>(outcome.counts.measured) + 1,
            "a line of the spreadsheet that is none", csv);
    summaryText(outcome);
    return 0;
}

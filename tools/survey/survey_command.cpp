// vx63 survey: all channels at all points of a site, as a plan has them.
#include "commands.h"
#include "common/clock.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/identity.h"
#include "common/interrupt.h"
#include "common/output.h"
#include "common/text.h"
#include "survey/ask.h"
#include "survey/measuring.h"
#include "survey/outcome.h"
#include "survey/plan.h"
#include "survey/reports.h"
#include "survey/results.h"
#include "survey/results_file.h"
#include "survey/show.h"
#include "survey/subcommands.h"
#include "survey/work.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tool {

namespace {

namespace fs = std::filesystem;

constexpr const char* kNotice = "\nvx63: stopping; what is measured is kept; Ctrl-C again ends at once\n";
constexpr const char* kGoOn = "the same command goes on with what is left";

struct Options {
    int32_t id = kDefaultProcessId;
    std::string plan;
    std::string out;
    std::string points;
    bool again = false;
    bool yes = false;
    bool json = false;
};

SurveyResults resultsIn(const fs::path& folder, const Survey& survey)
{
    std::error_code none;
    if (fs::exists(folder / kResultsFile, none))
        return readResults(folder.string(), &survey);
    return {survey, {}, 0};
}

// Throws Failure where somebody has to be asked and nobody can be.
bool asks(const Options& options, const std::vector<Work>& work)
{
    if (options.yes || work.size() == 1)
        return false;
    if (canAsk())
        return true;
    const auto left = std::ranges::count_if(work, [](const Work& one) { return !one.left.empty(); });
    if (left > 1 && options.points.empty())
        throw Failure(kExitDeclined, "nothing was done", "there is no terminal to ask on",
                      "give --yes, or a point with --point");
    return false;
}

// Throws Failure, unless all passes.
void conclude(const SurveyOutcome& outcome)
{
    const Counts& counts = outcome.counts;
    const std::vector<std::string> worst = worstOf(outcome);
    const std::string hint = "look at level, cable and antenna";
    if (outcome.verdict == Verdict::fail)
        throw Failure(kExitVerdictFail,
                      counts.failed > 0 ? format("%zu of %zu fail", counts.failed, counts.all)
                                        : "a slope fails",
                      worst.front(), hint);
    if (outcome.verdict == Verdict::marginal)
        throw Failure(kExitVerdictMarginal,
                      counts.marginal > 0 ? format("%zu of %zu are marginal", counts.marginal, counts.all)
                                          : "a slope is marginal",
                      worst.front(), hint);
    if (counts.measured < counts.all)
        throw Failure(
            kExitIncomplete,
            format("%zu of %zu channels are not measured", counts.all - counts.measured, counts.all),
            missingOf(outcome), kGoOn);
    if (outcome.verdict == Verdict::none)
        throw Failure(kExitVerdictFail, "nothing can be judged",
                      "there is no signal, or no limit for its system and modulation",
                      "see 'vx63 settings show meas_set/thrd', or give limits in the plan");
}

// Reports, summary and exit code of what there is.
//   ended  what ended the measuring before its time, or null
int finish(const Options& options, const std::string& folder, const std::exception_ptr& ended)
{
    const SurveyResults results = readResults(folder);
    try {
        writeReports(results, folder);
    } catch (const Failure& failure) {
        complain(failure.what());
    }
    std::optional<Failure> failed;
    try {
        if (ended)
            std::rethrow_exception(ended);
    } catch (const Failure& failure) {
        failed = Failure(failure.code(), failure.failed(), failure.why(), failure.hint() + "; " + kGoOn);
    }
    const SurveyOutcome outcome = outcomeOf(results);
    print(options.json ? summaryJson(outcome, results.survey.site, folder).line()
                       : "\n" + closingText(outcome, folder));
    if (failed)
        throw *failed;
    if (interruption() != 0)
        return kExitSignal + interruption();
    conclude(outcome);
    return kExitSuccess;
}

int runSurvey(const Options& options)
{
    SurveyPlan plan = readPlan(options.plan);
    const std::string folder =
        options.out.empty() ? fs::path(options.plan).replace_extension().string() : options.out;
    const SurveyResults before = resultsIn(folder, plan.survey);
    const std::vector<Work> work = workOf(plan, options.points, before.readings, options.again);
    size_t left = 0;
    size_t all = 0;
    for (const Work& one : work) {
        left += one.left.size();
        all += one.all;
    }
    if (left == 0) {
        ResultsFile file(folder);
        if (const std::string line = surveyLine(before.survey);
            line != surveyLine(readResults(folder).survey))
            file.add(line);
        complain(format("all %zu channels are measured already: the reports are written anew", all));
        return finish(options, folder, nullptr);
    }
    const bool asking = asks(options, work);
    const std::vector<Threshold> thresholds = readThresholds();
    const Identity identity(options.id);
    catchInterruption(kNotice);
    MeasStatus status{};
    require("cannot read the measurement status", [&] { return vx63_getMeasStatus(&status); });
    if (const auto sleeps = sleepOf("cannot survey " + plan.survey.site))
        throw *sleeps;
    ResultsFile file(folder);
    plan.survey.timeMs = unixTimeMs();
    plan.survey.meter = readMeter();
    file.add(surveyLine(plan.survey));
    if (left < all)
        complain(format("%zu of %zu channels are measured already", all - left, all));
    std::exception_ptr ended;
    try {
        measureAll(plan, work, thresholds, file, asking, !options.json);
    } catch (const std::exception&) {
        ended = std::current_exception();
    }
    return finish(options, folder, ended);
}

} // namespace

void addSurvey(CommandLine& program)
{
    program.addCommand("survey", "Measure all channels at all points of a site, by a plan, and report",
                       "vx63 survey house.toml --yes", runSurvey, [](CommandLine& line, Options& options) {
                           line.text("PLAN", options.plan, "FILE", "The plan, see vx63-survey(1)");
                           line.text("--out", options.out, "DIR",
                                     "Results and reports [PLAN without its ending]");
                           line.text("--point", options.points, "NAMES",
                                     "These points alone, as \"outlet 2,outlet 5\" [all]");
                           line.flag("--again", options.again, "Measure what is measured already once more");
                           addSurveyReport(line);
                           addSurveyCompare(line);
                           line.check([&options] {
                               if (options.plan.empty())
                                   throw WrongUsage("PLAN is required");
                           });
                       });
}

} // namespace tool

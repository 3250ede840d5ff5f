#include "survey/measuring.h"

#include "common/exchange.h"
#include "common/interrupt.h"
#include "common/output.h"
#include "common/text.h"
#include "measure/channel_options.h"
#include "survey/ask.h"
#include "survey/channel.h"
#include "survey/outcome.h"
#include "survey/results.h"
#include "survey/show.h"

#include <cstring>
#include <optional>
#include <string>

namespace tool {

namespace {

class Measuring {
public:
    Measuring(int64_t lockTimeoutMs, const std::vector<Threshold>& thresholds, ResultsFile& file, bool shows)
        : m_lockTimeoutMs(lockTimeoutMs), m_thresholds(thresholds), m_file(file), m_shows(shows)
    {}

    // Until an interruption. Throws Failure and BrokenPipe.
    void measure(const Work& work)
    {
        if (m_shows)
            print((m_begun ? "\n" : "") +
                  paragraph(work.point->name + (work.point->note.empty() ? "" : ", " + work.point->note)));
        m_begun = true;
        const SurveyList* last = nullptr;
        std::optional<ChannelLines> lines;
        size_t number = work.all - work.left.size();
        for (const SurveyTask& task : work.left) {
            select(task.list->input);
            const auto reading = measure(task, ++number, work.all);
            if (!reading)
                return;
            m_file.add(readingLine(*reading));
            if (!m_shows)
                continue;
            if (task.list != last)
                print(lines.emplace(*task.list).header());
            last = task.list;
            print(lines->line(outcomeOf(*task.channel, &*reading)));
        }
    }

private:
    void select(const std::optional<uint32_t>& input)
    {
        if (!input || input == m_input)
            return;
        selectInput(static_cast<int32_t>(*input));
        m_input = input;
    }

    std::optional<SurveyReading> measure(const SurveyTask& task, size_t number, size_t all)
    {
        if (interruption() != 0)
            return std::nullopt;
        Progress progress(printable(task.point->name) + format(": %zu/%zu  ", number, all) +
                          printable(task.channel->name) +
                          format("  %.3f MHz  ", task.channel->frequencyKhz / 1000.0));
        return measureChannel(task, m_thresholds, m_lockTimeoutMs, progress);
    }

    int64_t m_lockTimeoutMs;
    const std::vector<Threshold>& m_thresholds;
    ResultsFile& m_file;
    bool m_shows;

    std::optional<uint32_t> m_input; // that is selected
    bool m_begun = false;
};

} // namespace

SurveyMeter readMeter()
{
    SurveyMeter meter;
    ProductInfo info{};
    if (exchange([&] { return vx63_getProductInfo(&info); }) == VX63_OK) {
        meter.model = fieldText(info.cModelCode);
        meter.serial = fieldText(info.cSerialNo);
        meter.version = fieldText(info.cMainPrgVer);
    }
    AngleCalStat calibration{};
    if (exchange([&] { return vx63_getAngleCalStat(&calibration); }) == VX63_OK)
        meter.angleCalibration = calibration.lStatus;
    return meter;
}

void measureAll(const SurveyPlan& plan, const std::vector<Work>& work,
                const std::vector<Threshold>& thresholds, ResultsFile& file, bool asks, bool shows)
{
    const size_t points = plan.survey.points.size();
    Measuring measuring(plan.lockTimeoutMs, thresholds, file, shows);
    for (const Work& one : work) {
        if (one.left.empty() || interruption() != 0)
            continue;
        if (asks) {
            const std::string place =
                one.point->name + format(" (%zu of %zu, %zu channel%s)", one.number, points, one.left.size(),
                                         one.left.size() == 1 ? "" : "s");
            const Answer answer = askFor(place);
            if (answer == Answer::end)
                return;
            if (answer == Answer::skip)
                continue;
        }
        measuring.measure(one);
    }
}

} // namespace tool

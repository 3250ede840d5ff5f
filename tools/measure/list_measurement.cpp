#include "measure/list_measurement.h"

#include "common/clock.h"
#include "common/command_line.h"
#include "common/exchange.h"
#include "common/failure.h"
#include "common/interrupt.h"
#include "common/json.h"
#include "common/names.h"
#include "common/text.h"
#include "measure/channel_options.h"
#include "measure/channel_search.h"
#include "measure/conditions_file.h"
#include "measure/drawing.h"
#include "measure/judgement.h"
#include "measure/limits.h"
#include "measure/reading.h"
#include "measure/verdict_check.h"
#include "plot/levels.h"
#include "plot/picture.h"

#include <algorithm>

namespace tool {

namespace {

// Of the ways in which a channel can be occupied that which was found: it locks, or there is a signal at all.
std::vector<Reading> bestOfGroups(const std::vector<ListChannel>& channels,
                                  const std::vector<MultiMeasResult>& results,
                                  const std::vector<Threshold>& thresholds, const MeasStatus& status)
{
    const auto rank = [](const MultiMeasResult& result) {
        return result.lock != 0 ? 2 : hasSignal(result) ? 1 : 0;
    };
    const int64_t timeMs = unixTimeMs();
    std::vector<Reading> best;
    for (size_t i = 0; i < channels.size(); ++i) {
        const ListChannel& channel = channels[i];
        Reading reading{timeMs, channel.name, channel.condition, results[i], {}, {}, {}, channel.widthKhz};
        setSurroundings(reading, status);
        reading.supply = channel.condition.powerSupply; // it changes from channel to channel
        reading.judgement = judge(thresholds, channel.condition, results[i]);
        if (i == 0 || channels[i - 1].group != channel.group)
            best.push_back(reading);
        else if (rank(results[i]) > rank(best.back().result))
            best.back() = reading;
    }
    return best;
}

std::string tableOf(ListKind kind, const std::vector<Reading>& list)
{
    Table rows = {{"Channel", "kHz", "dBuV", "C/N dB", "BER", "Lock", "Mod", "Verdict"}};
    for (const Reading& reading : list) {
        const MultiMeasResult& result = reading.result;
        if (kind == ListKind::scan && !hasSignal(result) && !reading.judgement.unrecognised)
            continue;
        const bool locked = result.lock != 0;
        rows.push_back({reading.channel, format("%u", reading.condition.ulFreq), tenths(result.LEVEL),
                        hasSignal(result) ? tenths(result.CNR) : "-", bitErrorRateText(result),
                        locked                         ? "yes"
                        : needsLock(reading.condition) ? "no"
                                                       : "-",
                        locked ? std::string(modulationName(result.MOD).value_or("?")) : "-",
                        verdictCell(reading)});
    }
    return table(rows, "<>>>>");
}

std::string summaryOf(const std::vector<Reading>& list)
{
    const auto found = std::ranges::count_if(list, [](const Reading& one) { return hasSignal(one.result); });
    const auto locked = std::ranges::count_if(list, [](const Reading& one) { return one.result.lock != 0; });
    const auto unrecognised =
        std::ranges::count_if(list, [](const Reading& one) { return one.judgement.unrecognised; });
    return format("%td of %zu channels carry a signal, %td locked", found, list.size(), locked) +
           (unrecognised > 0 ? format(", %td not recognised", unrecognised) : "");
}

// Of level carriers the frequency tells more than the name.
LevelChart chartOf(const std::vector<Reading>& list)
{
    LevelChart chart{true, {}};
    for (const Reading& reading : list) {
        chart.byFrequency = chart.byFrequency && !needsLock(reading.condition);
        chart.bars.push_back(levelBarOf(reading));
    }
    return chart;
}

Caption captionOf(const ListOptions& options, const std::vector<Reading>& list)
{
    std::vector<uint16_t> systems;
    for (const Reading& reading : list)
        systems.push_back(reading.condition.usBdSys);
    return {"Levels of the channels" +
                (options.plan == nullptr ? "" : ", plan " + std::string(options.plan->name)),
            summaryOf(list), circumstances(systems, list.front().input, list.front().timeMs)};
}

void show(ListKind kind, const ListOptions& options, const std::vector<Reading>& list)
{
    if (options.form == Form::text) {
        print(tableOf(kind, list) + "\n" + levelsText(chartOf(list), textStyle()) + "\n" +
              paragraph(summaryOf(list)));
    } else {
        List objects(options.form);
        for (const Reading& reading : list)
            objects.add(readingJson(reading));
        objects.end();
    }
    if (!options.plot.empty())
        plotLevels(options.plot, captionOf(options, list), chartOf(list));
}

std::vector<ListChannel> channelsOfPlan(const ListOptions& options)
{
    const std::string plan(options.plan->name);
    std::vector<ListChannel> channels = planChannels(*options.plan, options.changes);
    if (channels.empty())
        throw Failure(kExitNoInput, "cannot measure plan " + plan, "it has no channels",
                      "look at its settings file");
    if (!options.channels.empty())
        channels = pickChannels(channels, options.channels, *options.plan);
    for (const ListChannel& channel : channels)
        if (const auto refusal = refusalOf(channel.condition))
            throw Failure(kExitUsage, "cannot measure channel " + channel.name + " of plan " + plan,
                          refusal->why, "check --lo, --system and --mod, and the plan");
    return channels;
}

} // namespace

std::vector<Option> addListOptions(CommandLine& line, ListOptions& options)
{
    const Option plan = addPlan(line, options.plan);
    std::vector ofPlan = {
        plan,
        line.text("--channel", options.channels, "NAMES", "Channels of the plan alone, as 13-20,27 [all]")
            .needs(plan),
    };
    for (const Option& change : addPlanChanges(line, options.changes, true))
        ofPlan.push_back(change);
    line.number("--input", options.input, "0|1", "Select this RF input first [leave it]", 0, 1);
    line.number("--disp-type", options.ucDispType, "N",
                "Number of a display type, handed on to the meter [0]", 0, UINT8_MAX);
    Picture::addOption(line, options.plot);
    line.csv(options.form);
    line.flag("--check", options.check,
              "Exit with 14 where a verdict is fail, with 15 where one is marginal");
    return ofPlan;
}

int runList(ListKind kind, const ListOptions& options)
{
    const std::vector<ListChannel> channels =
        options.plan != nullptr ? channelsOfPlan(options) : readConditions(options.conditions);
    const std::vector<Threshold> thresholds = readThresholds(); // a scan for nothing would take minutes
    const Identity identity(options.id);
    catchInterruption(kStoppingNotice);
    selectInput(options.input);
    if (interruption() != 0)
        return kExitSignal + interruption();
    MeasStatus status{};
    require("cannot read the measurement status", [&] { return vx63_getMeasStatus(&status); });
    std::vector<MultiMeasResult> results;
    {
        Progress progress;
        results = measureList(kind, options.ucDispType, channels, progress);
    }
    if (interruption() != 0)
        return kExitSignal + interruption();
    const std::vector<Reading> readings = bestOfGroups(channels, results, thresholds, status);
    show(kind, options, readings);
    if (options.check) {
        VerdictCheck verdicts;
        for (const Reading& reading : readings)
            verdicts.add(reading);
        verdicts.conclude();
    }
    return kExitSuccess;
}

} // namespace tool

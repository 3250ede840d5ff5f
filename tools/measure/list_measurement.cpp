#include "measure/list_measurement.h"

#include "common/command_line.h"
#include "common/failure.h"
#include "common/interrupt.h"
#include "common/json.h"
#include "common/names.h"
#include "common/text.h"
#include "measure/channel_options.h"
#include "measure/conditions_file.h"
#include "measure/judgement.h"
#include "measure/reading.h"
#include "plot/levels.h"
#include "plot/picture.h"

#include <algorithm>
#include <chrono>

namespace tool {

namespace {

struct Measured {
    ListChannel channel;
    MultiMeasResult result;
    int64_t timeMs;
    Judgement judgement;
};

bool hasSignal(const MultiMeasResult& result)
{
    return (result.stat & VX63_STAT_SIGNAL) != 0;
}

Reading readingOf(const Measured& measured)
{
    const MultiMeasResult& from = measured.result;
    Reading reading{measured.timeMs, measured.channel.condition.ulFreq, {}};
    SingleMeasResult& to = reading.result;
    to.lock = from.lock;
    to.stat = from.stat;
    to.mesCond = from.mesCond;
    to.bdSys = from.bdSys;
    to.LEVEL = from.LEVEL;
    to.CNR = from.CNR;
    to.BER_TOTAL = from.BER_TOTAL;
    to.BER_ERR = from.BER_ERR;
    to.TSID = from.TSID;
    to.GI = from.GI;
    to.LAYER = from.LAYER;
    to.MOD = from.MOD;
    return reading;
}

// Of the ways in which a channel can be occupied that which was found: it locks, or there is a signal at all.
std::vector<Measured> bestOfGroups(const std::vector<ListChannel>& channels,
                                   const std::vector<MultiMeasResult>& results,
                                   const std::vector<Threshold>& thresholds)
{
    const auto rank = [](const MultiMeasResult& result) {
        return result.lock != 0 ? 2 : hasSignal(result) ? 1 : 0;
    };
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const int64_t timeMs = std::chrono::floor<std::chrono::milliseconds>(now).count();
    std::vector<Measured> best;
    for (size_t i = 0; i < channels.size(); ++i) {
        const Measured measured{channels[i], results[i], timeMs,
                                judge(thresholds, channels[i].condition, results[i])};
        if (best.empty() || best.back().channel.group != channels[i].group)
            best.push_back(measured);
        else if (rank(results[i]) > rank(best.back().result))
            best.back() = measured;
    }
    return best;
}

std::string verdictText(const Judgement& judgement, bool locked, bool needsLock)
{
    const char* name = verdictName(judgement.whole);
    if (name == nullptr)
        return "-";
    if (judgement.whole == Verdict::pass)
        return name;
    std::string why;
    const auto add = [&](Verdict verdict, const char* what) {
        if (verdict == judgement.whole)
            why += (why.empty() ? "" : ", ") + std::string(what);
    };
    add(judgement.level, "level");
    add(judgement.cnr, "C/N");
    add(judgement.ber, "BER");
    if (!locked && needsLock)
        why += why.empty() ? "no lock" : ", no lock";
    return name + (": " + why);
}

std::string tableOf(ListKind kind, const std::vector<Measured>& list)
{
    std::string text = format("%-8s %12s %6s %6s %9s %-4s %-7s %s\n", "Channel", "kHz", "dBuV", "C/N dB",
                              "BER", "Lock", "Mod", "Verdict");
    for (const Measured& measured : list) {
        const MultiMeasResult& result = measured.result;
        if (kind == ListKind::scan && !hasSignal(result))
            continue;
        const bool locked = result.lock != 0;
        const bool needsLock = measured.channel.condition.usBdSys != VX63_BDSYS_LEVEL;
        const auto modulation = modulationName(result.MOD);
        text += format("%-8s %12u %6s %6s %9s %-4s %-7s %s\n", printable(measured.channel.name).c_str(),
                       measured.channel.condition.ulFreq, tenths(result.LEVEL).c_str(),
                       hasSignal(result) ? tenths(result.CNR).c_str() : "-",
                       bitErrorRateText(readingOf(measured).result).c_str(),
                       locked      ? "yes"
                       : needsLock ? "no"
                                   : "-",
                       locked ? std::string(modulation.value_or("?")).c_str() : "-",
                       verdictText(measured.judgement, locked, needsLock).c_str());
    }
    return text;
}

std::string summaryOf(const std::vector<Measured>& list)
{
    const auto found = std::ranges::count_if(list, [](const Measured& one) { return hasSignal(one.result); });
    const auto locked = std::ranges::count_if(list, [](const Measured& one) { return one.result.lock != 0; });
    return format("%td of %zu channels carry a signal, %td locked", found, list.size(), locked);
}

Json verdictJson(Verdict verdict)
{
    const char* name = verdictName(verdict);
    return name ? Json(name) : Json();
}

Json jsonOf(const Measured& measured)
{
    Json json = {{"channel", measured.channel.name},
                 {"signal", hasSignal(measured.result)},
                 {"verdict", verdictJson(measured.judgement.whole)},
                 {"level_verdict", verdictJson(measured.judgement.level)},
                 {"cnr_verdict", verdictJson(measured.judgement.cnr)},
                 {"ber_verdict", verdictJson(measured.judgement.ber)},
                 {"lo_khz", measured.channel.condition.ulLoFreq}};
    json.add(readingJson(readingOf(measured)));
    return json;
}

// RFC 4180.
std::string csvField(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

std::string csvOf(const std::vector<Measured>& list)
{
    std::string text = "channel,frequency_khz,lo_khz,signal,locked,level_dbuv,cnr_db,ber,ber_errors,ber_bits,"
                       "system,modulation,"
                       "tsid,verdict\n";
    for (const Measured& measured : list) {
        const Json json = jsonOf(measured);
        std::string line = csvField(measured.channel.name);
        for (const char* key : {"frequency_khz", "lo_khz", "signal", "locked", "level_dbuv", "cnr_db", "ber",
                                "ber_errors", "ber_bits", "system", "modulation", "tsid", "verdict"})
            line += "," + json.plain(key);
        text += line + "\n";
    }
    return text;
}

std::vector<LevelBar> barsOf(const std::vector<Measured>& list)
{
    std::vector<LevelBar> bars;
    for (const Measured& measured : list)
        bars.push_back({measured.channel.name, measured.result.LEVEL / 10.0, hasSignal(measured.result),
                        measured.judgement.whole});
    return bars;
}

void show(ListKind kind, const ListOptions& options, const std::vector<Measured>& list)
{
    if (options.json) {
        std::string text;
        for (const Measured& measured : list)
            text += jsonOf(measured).line();
        print(text);
    } else if (options.csv) {
        print(csvOf(list));
    } else {
        print(tableOf(kind, list) + "\n" + levelsText(barsOf(list), textStyle()) + "\n" + summaryOf(list) +
              "\n");
    }
    if (!options.plot.empty())
        plotLevels(options.plot,
                   "Levels of the channels" + (options.plan.empty() ? "" : ", plan " + options.plan),
                   summaryOf(list), barsOf(list));
}

} // namespace

std::vector<Option> addListOptions(CommandLine& line, ListOptions& options)
{
    std::vector ofPlan = {
        line.value("--plan", "NAME", "Channel plan: " + planNames(),
                   [&options](const std::string& text) {
                       if (!isPlan(text))
                           throw WrongUsage("--plan",
                                            format("'%s' is none of %s", text.c_str(), planNames().c_str()));
                       options.plan = text;
                   })
            .offers(planNames()),
        line.number("--lo", options.changes.ulLoFreq, "KHZ",
                    "Local-oscillator frequency, in kHz [that of the settings]", 0, UINT32_MAX),
        line.value(
                "--system", "SYSTEM",
                "Broadcast system: " + systemNames() + ", or its code [that of the plan]",
                [&options](const std::string& text) { options.changes.usBdSys = systemIn("--system", text); })
            .offers(systemNames()),
        line.text("--mod", options.modulation, "MOD",
                  "Modulation: " + modulationNames() + ", or its code [0: whatever the system has]")
            .offers(modulationNames()),
        line.number("--supply", options.changes.powerSupply, "0..4",
                    "Antenna power supply: 0 off, 1 11 V, 2 15 V, 3 11 V and tone, 4 15 V and tone [that of "
                    "the plan]",
                    0, 4),
    };
    line.number("--input", options.input, "0|1", "Select this RF input first [leave it]", 0, 1);
    line.number("--disp-type", options.ucDispType, "N",
                "Number of a display type, handed on to the meter [0]", 0, UINT8_MAX);
    Picture::addOption(line, options.plot);
    const Option json = line.flag("--json", options.json, "Print a JSON object a channel");
    line.flag("--csv", options.csv, "Print comma-separated values").excludes(json);
    return ofPlan;
}

void resolveListModulation(ListOptions& options)
{
    if (!options.modulation.empty())
        options.changes.usMod =
            modulationIn("--mod", options.modulation, options.changes.usBdSys.value_or(0));
}

int runList(ListKind kind, const ListOptions& options)
{
    const std::vector<ListChannel> channels = options.conditions.empty()
                                                  ? planChannels(options.plan, options.changes)
                                                  : readConditions(options.conditions);
    if (channels.empty())
        throw Failure(kExitNoInput, "cannot measure plan " + options.plan, "it has no channels",
                      "look at its settings file");
    const std::vector<Threshold> thresholds = readThresholds(); // a scan for nothing would take minutes
    const Identity identity(options.id);
    catchInterruption(kStoppingNotice);
    selectInput(options.input);
    if (interruption() != 0)
        return kExitSignal + interruption();
    std::vector<MultiMeasResult> results;
    {
        Progress progress;
        results = measureList(kind, options.ucDispType, channels, progress);
    }
    if (interruption() != 0)
        return kExitSignal + interruption();
    show(kind, options, bestOfGroups(channels, results, thresholds));
    return kExitSuccess;
}

} // namespace tool

// vx63 measure delay-profile: the paths on which a terrestrial signal arrives.
#include "plot/delay_profile.h"
#include "commands.h"
#include "common/failure.h"
#include "common/interrupt.h"
#include "common/json.h"
#include "common/names.h"
#include "common/numbers.h"
#include "common/output.h"
#include "common/text.h"
#include "measure/channel_options.h"
#include "measure/drawing.h"
#include "measure/echoes.h"
#include "measure/profile.h"
#include "measure/single_measurement.h"
#include "plot/picture.h"
#include "plot/text.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

namespace tool {

namespace {

struct Options : ChannelOptions {
    std::string plot;
    bool json = false;
};

bool isOutside(const Path& path, const std::optional<GuardInterval>& guard)
{
    return guard && path.delayUs > guard->to;
}

std::string pathsText(const std::vector<Path>& paths, const std::optional<GuardInterval>& guard)
{
    std::string text = format("%-5s %9s %9s %7s\n", "Path", "Delay us", "km", "dB");
    for (const Path& path : paths) {
        const bool main = path.delayUs == std::ranges::max(paths, {}, &Path::levelDb).delayUs;
        text += format("%-5s %9.2f %9.3f %7.1f%s\n", main ? "main" : "echo", path.delayUs + 0.0,
                       distanceKm(path.delayUs), path.levelDb, isOutside(path, guard) ? "  outside" : "");
    }
    return text;
}

void show(const Options& options, const Reading& reading, const DlyPrfResult& profile)
{
    const std::vector<Path> paths = findPaths(profile.ucDlyPrfData);
    const auto guard = guardOf(reading.result, paths);
    if (options.json) {
        Json pathsJson = Json::array();
        for (const Path& path : paths)
            pathsJson.push({{"delay_us", rounded(path.delayUs, 3)},
                            {"distance_km", rounded(distanceKm(path.delayUs), 3)},
                            {"level_db", rounded(path.levelDb, 2)},
                            {"outside_guard", isOutside(path, guard)}});
        Json samplesJson = Json::array();
        for (const int8_t sample : profile.ucDlyPrfData)
            samplesJson.push(levelOf(sample));
        Json json = readingJson(reading);
        json.set("guard_from_us", guard ? Json(rounded(guard->from, 3)) : Json());
        json.set("guard_to_us", guard ? Json(rounded(guard->to, 3)) : Json());
        json.set("paths", pathsJson);
        json.set("sample_us", kSampleUs);
        json.set("first_sample_us", delayOf(0));
        json.set("samples_db", samplesJson);
        print(json.line());
    } else {
        print(readingText(reading) + "\n" + pathsText(paths, guard) + "\n" +
              delayProfileText(profile, guard, textStyle()));
    }
    if (!options.plot.empty())
        plotDelayProfile(options.plot, delayProfileCaption(reading, paths), profile, paths, guard);
}

int measureDelayProfile(const Options& options)
{
    const Identity identity(options.id);
    catchInterruption(kStoppingNotice);
    std::optional<Progress> progress(std::in_place);
    progress->show(format("Tuning to %u kHz", options.condition.ulFreq));
    selectInput(options.input);
    if (interruption() != 0)
        return kExitSignal + interruption();

    // The guard interval is known only to the single measurement; one run at a time.
    std::optional<Reading> reading;
    {
        SingleMeasurement measurement(options);
        reading = measurement.readLocked(*progress);
        measurement.stop();
    }
    std::unique_ptr<DlyPrfResult> profile;
    if (interruption() == 0 && reading->result.lock != 0)
        profile = readProfile(options, *progress);
    progress.reset();
    if (interruption() != 0)
        return kExitSignal + interruption();
    if (!profile)
        throw noLock(options);
    show(options, *reading, *profile);
    return kExitSuccess;
}

} // namespace

void addDelayProfile(CommandLine& measure)
{
    measure.addCommand("delay-profile", "Show the echoes of a terrestrial signal",
                       "vx63 measure delay-profile --channel 26 --plot echoes.svg", measureDelayProfile,
                       [](CommandLine& line, Options& options) {
                           Picture::addOption(line, options.plot);
                           addChannelOptions(line, options);
                           line.check([&options] {
                               resolveChannel(options, VX63_BDSYS_TERRESTRIAL);
                               const auto system = systemName(options.condition.usBdSys);
                               if (options.condition.usBdSys != VX63_BDSYS_TERRESTRIAL)
                                   throw WrongUsage(
                                       "--system", "a delay profile is of terrestrial (OFDM) alone, not of " +
                                                       std::string(system.value_or("another system")));
                           });
                       });
}

} // namespace tool

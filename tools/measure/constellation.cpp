// vx63 measure constellation: the points of a signal that is locked, and their modulation error ratio.
#include "plot/constellation.h"
#include "commands.h"
#include "common/failure.h"
#include "common/interrupt.h"
#include "common/json.h"
#include "common/numbers.h"
#include "common/output.h"
#include "common/table.h"
#include "common/text.h"
#include "measure/channel_options.h"
#include "measure/modulation_error.h"
#include "measure/point_collection.h"
#include "measure/single_measurement.h"
#include "plot/picture.h"
#include "plot/text.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace tool {

namespace {

constexpr int kMaxEmptyReads = 50; // in a row, before the signal counts as lost
constexpr std::chrono::milliseconds kPollTime{100};

struct Options : ChannelOptions {
    uint16_t points = 1000;
    std::string plot;
    bool json = false;
};

struct Constellation {
    Reading reading; // taken with the last points
    std::vector<ConstaPoint> points;
};

// All points, or those that there were before the lock was lost or an interruption.
Constellation readPoints(const Options& options, const SingleMeasurement& measurement, Progress& progress)
{
    PointCollection collection(options.ucDispType, options.points);
    std::vector<ConstaPoint> points;
    int empty = 0;
    while (points.size() < options.points && empty < kMaxEmptyReads && interruption() == 0) {
        progress.show(format("Reading points: %zu of %u", points.size(), options.points));
        const auto came = collection.read(options.points - points.size());
        points.insert(points.end(), came.begin(), came.end());
        empty = came.empty() ? empty + 1 : 0;
        if (came.empty())
            waitFor(kPollTime);
    }
    Constellation constellation{measurement.readingOf(collection.result()), std::move(points)};
    collection.stop();
    return constellation;
}

std::string titleOf(const Options& options, const std::optional<IdealPoints>& ideal)
{
    return "Constellation, " + format("%.3f MHz", options.condition.ulFreq / 1000.0) +
           (ideal ? ", " + std::string(ideal->modulation) : "");
}

void show(const Options& options, const Constellation& constellation)
{
    const Reading& reading = constellation.reading;
    const MultiMeasResult& result = reading.result;
    const auto ideal = idealPoints(result.MOD, constellation.points, result.CNR / 10.0);
    std::optional<double> mer;
    if (ideal)
        mer = modulationErrorRatio(constellation.points, *ideal);
    const std::string merText = mer ? format("%.1f dB", *mer) : "-";
    if (options.json) {
        Json json = readingJson(reading);
        json.set("mer_db", mer ? Json(rounded(*mer, 2)) : Json());
        json.set("points_modulation", ideal ? Json(ideal->modulation) : Json());
        Json points = Json::array();
        for (const ConstaPoint& point : constellation.points)
            points.push(Json::array({point.I, point.Q}));
        json.set("points", points);
        print(json.line());
    } else {
        print(readingText(reading) +
              aligned({{"MER           ", merText},
                       {"Points", format("%zu", constellation.points.size()) +
                                      (ideal ? " of " + std::string(ideal->modulation) : "")}}) +
              constellationText(constellation.points, ideal, textStyle()));
    }
    if (!options.plot.empty())
        plotConstellation(options.plot,
                          {titleOf(options, ideal),
                           "MER " + merText + ", C/N " + tenths(result.CNR) + " dB, level " +
                               tenths(result.LEVEL) + " dB\u00B5V, " +
                               format("%zu points", constellation.points.size()),
                           circumstances({reading.condition.usBdSys}, reading.input, reading.timeMs)},
                          constellation.points, ideal);
}

int measureConstellation(const Options& options)
{
    const Identity identity(options.id);
    catchInterruption(kStoppingNotice);
    std::optional<Progress> progress(std::in_place);
    progress->show(format("Tuning to %u kHz", options.condition.ulFreq));
    selectInput(options.input);
    if (interruption() != 0)
        return kExitSignal + interruption();

    SingleMeasurement measurement(options);
    const Reading locked = measurement.readLocked(*progress);
    if (interruption() == 0 && locked.result.lock == 0) {
        progress.reset();
        measurement.stop();
        throw noLock(options);
    }
    std::optional<Constellation> constellation;
    if (interruption() == 0)
        constellation = readPoints(options, measurement, *progress);
    progress.reset();
    measurement.stop();
    if (interruption() != 0)
        return kExitSignal + interruption();
    if (constellation->points.size() < options.points)
        throw noLock(options, format("it was lost after %zu of %u points", constellation->points.size(),
                                     options.points));
    show(options, *constellation);
    return kExitSuccess;
}

} // namespace

void addConstellation(CommandLine& measure)
{
    measure.addCommand("constellation", "Draw the constellation, tell its modulation error ratio",
                       "vx63 measure constellation --channel 27 --points 4000 --plot points.png",
                       measureConstellation, [](CommandLine& line, Options& options) {
                           line.value("--points", "N", "Points to collect: 1000, 2000 or 4000 [1000]",
                                      [&options](const std::string& text) {
                                          const auto number = parseNumber(text);
                                          if (number != 1000 && number != 2000 && number != 4000)
                                              throw WrongUsage(
                                                  "--points",
                                                  format("'%s' is none of 1000, 2000, 4000", text.c_str()));
                                          options.points = static_cast<uint16_t>(*number);
                                      })
                               .offers("1000, 2000, 4000");
                           Picture::addOption(line, options.plot);
                           addChannelOptions(line, options);
                           line.check([&options] {
                               resolveChannel(options);
                               if (!needsLock(options.condition))
                                   throw WrongUsage("--system", "a level carrier has no constellation");
                           });
                       });
}

} // namespace tool

#include "survey/pictures.h"

#include "common/text.h"
#include "measure/drawing.h"
#include "measure/reading.h"
#include "plot/constellation.h"
#include "plot/delay_profile.h"
#include "plot/levels.h"
#include "survey/words.h"

#include <algorithm>

namespace tool {

namespace {

LevelKind kindOf(Verdict verdict, LevelKind otherwise)
{
    return verdict == Verdict::pass       ? LevelKind::pass
           : verdict == Verdict::marginal ? LevelKind::marginal
           : verdict == Verdict::fail     ? LevelKind::fail
                                          : otherwise;
}

} // namespace

Markup levelsPicture(const PointOutcome& point, const ListOutcome& list)
{
    constexpr double kPaper = 640; // an A4 page is not much wider
    LevelChart chart{true, {}, kPaper};
    std::vector<uint16_t> systems;
    const SurveyReading* first = nullptr;
    for (const ChannelOutcome& channel : list.channels) {
        if (isSilent(channel))
            continue;
        const Reading& reading = channel.reading->reading;
        first = first == nullptr ? channel.reading : first;
        chart.byFrequency = chart.byFrequency && !needsLock(reading.condition);
        chart.bars.push_back(levelBarOf(reading));
        LevelKind& kind = chart.bars.back().kind;
        kind = kind == LevelKind::unrecognised ? kind : kindOf(channel.verdict, kind);
        systems.push_back(reading.condition.usBdSys);
    }
    if (chart.bars.empty())
        return {};
    return Markup::raw(drawLevels(
        inlineSvgCanvas,
        {"Levels, " + point.point->name + ", " + list.list->name,
         list.slopeDb ? format("slope %.1f dB, from ", *list.slopeDb) + list.strongest + " to " + list.weakest
                      : format("%zu channels", chart.bars.size()),
         circumstances(systems, first->reading.input, first->reading.timeMs)},
        chart));
}

Markup constellationPicture(const SurveyReading& one)
{
    if (one.constellation.empty())
        return {};
    const auto ideal = idealPoints(one.reading.result.MOD, one.constellation, one.reading.result.CNR / 10.0);
    return Markup::raw(drawConstellation(
        inlineSvgCanvas, constellationCaption(one.reading, ideal, one.merDb, one.constellation.size()),
        one.constellation, ideal));
}

Markup delayProfilePicture(const SurveyReading& one)
{
    if (one.delayProfile.size() != VX63_DLYPRF_SAMPLES)
        return {};
    const auto profile = std::make_unique<DlyPrfResult>();
    std::ranges::copy(one.delayProfile, profile->ucDlyPrfData);
    const std::vector<Path> paths = findPaths(profile->ucDlyPrfData);
    return Markup::raw(drawDelayProfile(inlineSvgCanvas, delayProfileCaption(one.reading, paths), *profile,
                                        paths, guardOf(one.reading.result, paths)));
}

} // namespace tool

#include "measure/drawing.h"

#include "common/text.h"

namespace tool {

namespace {

LevelKind kindOf(const Reading& reading)
{
    if (reading.judgement.unrecognised)
        return LevelKind::unrecognised;
    switch (reading.judgement.whole) {
    case Verdict::pass:
        return LevelKind::pass;
    case Verdict::marginal:
        return LevelKind::marginal;
    case Verdict::fail:
        return LevelKind::fail;
    case Verdict::none:
        break;
    }
    return hasSignal(reading.result) ? LevelKind::signal : LevelKind::none;
}

std::string circumstancesOf(const Reading& reading)
{
    return circumstances({reading.condition.usBdSys}, reading.input, reading.timeMs);
}

} // namespace

LevelBar levelBarOf(const Reading& reading)
{
    return {reading.channel, reading.result.LEVEL / 10.0, kindOf(reading), reading.condition.ulFreq / 1000.0,
            reading.widthKhz / 1000.0};
}

Caption constellationCaption(const Reading& reading, const std::optional<IdealPoints>& ideal,
                             std::optional<double> merDb, size_t points)
{
    return {"Constellation, " + format("%.3f MHz", reading.condition.ulFreq / 1000.0) +
                (ideal ? ", " + std::string(ideal->modulation) : ""),
            "MER " + (merDb ? format("%.1f dB", *merDb) : "-") + ", C/N " + tenths(reading.result.CNR) +
                " dB, level " + tenths(reading.result.LEVEL) + " dB\u00B5V, " + format("%zu points", points),
            circumstancesOf(reading)};
}

Caption delayProfileCaption(const Reading& reading, const std::vector<Path>& paths)
{
    return {"Delay profile, " + format("%.3f MHz", reading.condition.ulFreq / 1000.0),
            "Level " + tenths(reading.result.LEVEL) + " dB\u00B5V, C/N " + tenths(reading.result.CNR) +
                " dB, " + (paths.size() == 1 ? std::string("no echoes") : format("%zu paths", paths.size())),
            circumstancesOf(reading)};
}

} // namespace tool

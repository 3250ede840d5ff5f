#include "survey/compare.h"

#include "common/numbers.h"
#include "common/text.h"
#include "survey/words.h"

#include <map>
#include <tuple>
#include <utility>

namespace tool {

namespace {

constexpr double kNoErrors = 1e-9; // a bit error rate that nobody sees the errors of
constexpr double kBerFactor = 10;
constexpr double kRounding = 1e-6;

// Point and list, and of what is measured the channel.
using Place = std::tuple<std::string, std::string, std::string>;

struct Places {
    std::map<Place, const ChannelOutcome*> channels; // that are measured
    std::map<Place, const ListOutcome*> lists;

    explicit Places(const SurveyOutcome& outcome)
    {
        for (const PointOutcome& point : outcome.points)
            for (const ListOutcome& list : point.lists) {
                lists.emplace(Place{point.point->name, list.list->name, ""}, &list);
                for (const ChannelOutcome& channel : list.channels)
                    if (channel.reading != nullptr)
                        channels.emplace(Place{point.point->name, list.list->name, channel.channel->name},
                                         &channel);
            }
    }
};

class Comparer {
public:
    Comparer(double by, SurveyComparison& comparison) : m_by(by), m_comparison(comparison) {}

    void compare(const Place& place, const ChannelOutcome& before, const ChannelOutcome& after)
    {
        m_place = place;
        ++m_comparison.compared;
        const SurveyReading& one = *before.reading;
        const SurveyReading& other = *after.reading;
        const MultiMeasResult& was = one.reading.result;
        const MultiMeasResult& is = other.reading.result;
        const bool had = hasSignal(was);
        const bool has = hasSignal(is);
        if (before.verdict != Verdict::none && after.verdict != Verdict::none &&
            before.verdict != after.verdict)
            add("verdict", "verdict", verdictWord(before), verdictWord(after), verdictText(before),
                verdictText(after), {}, after.verdict > before.verdict);
        if (had != has)
            add("signal", "signal", had, has, had ? "yes" : "no", has ? "yes" : "no", {}, had);
        if (!had || !has)
            return;
        compareDb("level_dbuv", "level", "dBuV", was.LEVEL / 10.0, is.LEVEL / 10.0, true);
        compareDb("cnr_db", "C/N", "dB", was.CNR / 10.0, is.CNR / 10.0, true);
        if (one.merDb && other.merDb)
            compareDb("mer_db", "MER", "dB", *one.merDb, *other.merDb, true);
        if (const bool worse = isWorseRate(was, is); worse || isWorseRate(is, was))
            add("ber", "BER", significant(*bitErrorRate(was), 4), significant(*bitErrorRate(is), 4),
                bitErrorRateText(was), bitErrorRateText(is), {}, worse);
    }

    void compareSlope(const Place& place, const ListOutcome& before, const ListOutcome& after)
    {
        m_place = place;
        if (before.slopeDb && after.slopeDb)
            compareDb("slope_db", "slope", "dB", *before.slopeDb, *after.slopeDb, false);
    }

    void one(const Place& place, Change kind)
    {
        m_place = place;
        const bool had = kind == Change::gone;
        append("measured", "measured", had, !had, had ? "yes" : "no", had ? "no" : "yes", {}, kind);
    }

private:
    // Where no bit was wrong, fewer than one of those counted is.
    static bool isWorseRate(const MultiMeasResult& before, const MultiMeasResult& after)
    {
        const auto was = bitErrorRate(before);
        const auto is = bitErrorRate(after);
        return was && is && *is > kNoErrors && *is >= kBerFactor * std::max(*was, 1.0 / before.BER_TOTAL);
    }

    void compareDb(const char* quantity, const char* name, const char* unit, double before, double after,
                   bool moreIsBetter)
    {
        const double change = after - before;
        if (std::abs(change) + kRounding < m_by || std::abs(change) < kRounding)
            return;
        add(quantity, name, rounded(before, 2), rounded(after, 2), format("%.1f %s", before, unit),
            format("%.1f %s", after, unit), rounded(change, 2), (change < 0) == moreIsBetter);
    }

    void add(const char* quantity, const char* name, const Json& before, const Json& after,
             const std::string& beforeText, const std::string& afterText, std::optional<double> change,
             bool worse)
    {
        append(quantity, name, before, after, beforeText, afterText, change,
               worse ? Change::worse : Change::better);
    }

    void append(const char* quantity, const char* name, const Json& before, const Json& after,
                const std::string& beforeText, const std::string& afterText, std::optional<double> change,
                Change kind)
    {
        const auto& [point, list, channel] = m_place;
        m_comparison.differences.push_back(
            {point, list, channel, quantity, name, before, after, beforeText, afterText, change, kind});
    }

    double m_by;
    SurveyComparison& m_comparison;
    Place m_place;
};

} // namespace

SurveyComparison compareSurveys(const SurveyOutcome& before, const SurveyOutcome& after, double by)
{
    const Places was(before);
    const Places is(after);
    SurveyComparison comparison;
    Comparer comparer(by, comparison);
    for (const PointOutcome& point : before.points)
        for (const ListOutcome& list : point.lists) {
            for (const ChannelOutcome& channel : list.channels) {
                const Place place{point.point->name, list.list->name, channel.channel->name};
                if (channel.reading == nullptr)
                    continue;
                if (const auto found = is.channels.find(place); found != is.channels.end())
                    comparer.compare(place, channel, *found->second);
                else
                    comparer.one(place, Change::gone);
            }
            const Place place{point.point->name, list.list->name, ""};
            if (const auto found = is.lists.find(place); found != is.lists.end())
                comparer.compareSlope(place, list, *found->second);
        }
    for (const PointOutcome& point : after.points)
        for (const ListOutcome& list : point.lists)
            for (const ChannelOutcome& channel : list.channels) {
                const Place place{point.point->name, list.list->name, channel.channel->name};
                if (channel.reading != nullptr && !was.channels.contains(place))
                    comparer.one(place, Change::added);
            }
    return comparison;
}

} // namespace tool

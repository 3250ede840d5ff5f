// The readings of a survey for spreadsheets: what vx63 measure tells of a channel, and what a survey adds.
#include "common/json.h"
#include "common/numbers.h"
#include "survey/reports.h"
#include "survey/words.h"

namespace tool {

namespace {

Json lineOf(const SurveyReading& one, const char* verdict, const std::string& why)
{
    Json line = {{"point", one.point}, {"list", one.list}};
    line.add(readingJson(one.reading));
    line.set("verdict", verdict);
    line.set("why", why);
    line.set("mer_db", one.merDb ? Json(rounded(*one.merDb, 1)) : Json());
    line.set("mer_verdict", verdictJson(one.reading.judgement.mer));
    return line;
}

} // namespace

std::string readingsCsv(const SurveyOutcome& outcome)
{
    std::string text = lineOf({}, "", "").csvHeader();
    for (const PointOutcome& point : outcome.points)
        for (const ListOutcome& list : point.lists)
            for (const ChannelOutcome& channel : list.channels)
                if (channel.reading != nullptr)
                    text += lineOf(*channel.reading, verdictWord(channel), channel.why).csvLine();
    return text;
}

} // namespace tool

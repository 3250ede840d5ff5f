#include "survey/results.h"

#include "common/failure.h"
#include "common/file.h"
#include "common/json.h"
#include "common/numbers.h"
#include "common/text.h"
#include "measure/frequency.h"
#include "survey/quantities.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <tuple>

namespace tool {

namespace {

using nlohmann::json;

constexpr size_t kMaxFile = size_t{1} << 28;

Json timeJson(int64_t timeMs)
{
    return static_cast<double>(timeMs) / 1000;
}

Json boundsJson(const Bounds& bounds)
{
    Json edges;
    for (const Edge& edge : kEdges)
        edges.set(edge.key, bounds.*edge.value);
    edges.set("of_plan", bounds.ofPlan);
    return edges;
}

Json listJson(const SurveyList& list)
{
    Json channels = Json::array();
    for (const SurveyChannel& channel : list.channels)
        channels.push({{"channel", channel.name},
                       {"frequency_khz", channel.frequencyKhz},
                       {"expected", channel.expected}});
    return {{"list", list.name},
            {"input", list.input},
            {"slope_db", boundsJson(list.slope)},
            {"channels", channels}};
}

// ---- reading ----

// A value that is not what it must be: "KEY is no text".
[[noreturn]] void refuse(const std::string& key, const char* why)
{
    throw std::runtime_error("'" + key + "' " + why);
}

const json& at(const json& object, const char* key)
{
    static const json none;
    if (!object.is_object())
        refuse(key, "is looked for in what is no object");
    const auto found = object.find(key);
    return found == object.end() ? none : *found;
}

std::string textOf(const json& object, const char* key)
{
    const json& value = at(object, key);
    if (value.is_null())
        return "";
    if (!value.is_string())
        refuse(key, "is no text");
    return value.get<std::string>();
}

bool flagOf(const json& object, const char* key)
{
    const json& value = at(object, key);
    if (!value.is_boolean())
        refuse(key, "is neither true nor false");
    return value.get<bool>();
}

std::optional<double> realOf(const json& object, const char* key)
{
    const json& value = at(object, key);
    if (value.is_null())
        return std::nullopt;
    if (!value.is_number() || !std::isfinite(value.get<double>()))
        refuse(key, "is no number");
    return value.get<double>();
}

template <class T>
T wholeOf(const json& value, const char* key, double factor = 1)
{
    const double number = value.is_number() ? std::round(value.get<double>() * factor) : NAN;
    if (!(number >= static_cast<double>(std::numeric_limits<T>::min()) &&
          number <= static_cast<double>(std::numeric_limits<T>::max())))
        refuse(key, "is no such number");
    return static_cast<T>(number);
}

template <class T>
void take(const json& object, const char* key, T& target, double factor = 1)
{
    target = wholeOf<T>(at(object, key), key, factor);
}

template <class T>
void take(const json& object, const char* key, std::optional<T>& target)
{
    if (const json& value = at(object, key); !value.is_null())
        target = wholeOf<T>(value, key);
}

int64_t timeOf(const json& object)
{
    const double seconds = realOf(object, "time").value_or(-1);
    if (!(seconds >= 0 && seconds < 1e11))
        refuse("time", "is no time");
    return std::llround(seconds * 1000);
}

const json& arrayOf(const json& object, const char* key)
{
    const json& value = at(object, key);
    if (!value.is_array())
        refuse(key, "is no array");
    return value;
}

Verdict verdictOf(const json& object, const char* key)
{
    const std::string name = textOf(object, key);
    if (name.empty())
        return Verdict::none;
    for (const Verdict verdict : {Verdict::pass, Verdict::marginal, Verdict::fail})
        if (name == verdictName(verdict))
            return verdict;
    refuse(key, "is no verdict");
}

Bounds boundsOf(const json& edges)
{
    Bounds bounds;
    for (const Edge& edge : kEdges)
        bounds.*edge.value = realOf(edges, edge.key);
    bounds.ofPlan = flagOf(edges, "of_plan");
    return bounds;
}

SurveyList listOf(const json& object)
{
    SurveyList list;
    list.name = textOf(object, "list");
    take(object, "input", list.input);
    list.slope = boundsOf(at(object, "slope_db"));
    for (const json& one : arrayOf(object, "channels")) {
        SurveyChannel channel;
        channel.name = textOf(one, "channel");
        take(one, "frequency_khz", channel.frequencyKhz);
        channel.expected = flagOf(one, "expected");
        list.channels.push_back(std::move(channel));
    }
    return list;
}

Survey surveyOf(const json& object)
{
    Survey survey;
    survey.timeMs = timeOf(object);
    survey.site = textOf(object, "site");
    survey.by = textOf(object, "by");
    survey.note = textOf(object, "note");
    const json& meter = at(object, "meter");
    survey.meter.model = textOf(meter, "model");
    survey.meter.serial = textOf(meter, "serial");
    survey.meter.version = textOf(meter, "version");
    take(meter, "angle_calibration", survey.meter.angleCalibration);
    for (const json& one : arrayOf(object, "points")) {
        SurveyPoint point{textOf(one, "point"), textOf(one, "note"), {}};
        for (const json& list : arrayOf(one, "lists"))
            point.lists.push_back(listOf(list));
        survey.points.push_back(std::move(point));
    }
    return survey;
}

Reading readingFrom(const json& object)
{
    Reading reading{timeOf(object), textOf(object, "channel"), {}, {}, {}, {}, {}};
    take(object, "frequency_khz", reading.condition.ulFreq);
    take(object, "lo_khz", reading.condition.ulLoFreq);
    take(object, "asked_system_code", reading.condition.usBdSys);
    take(object, "width_khz", reading.widthKhz);
    take(object, "input", reading.input);
    take(object, "power_supply", reading.supply);
    MultiMeasResult& result = reading.result;
    take(object, "level_dbuv", result.LEVEL, 10);
    take(object, "cnr_db", result.CNR, 10);
    take(object, "ber_errors", result.BER_ERR);
    take(object, "ber_bits", result.BER_TOTAL);
    take(object, "lock_code", result.lock);
    take(object, "status_code", result.stat);
    take(object, "condition_code", result.mesCond);
    take(object, "system_code", result.bdSys);
    take(object, "modulation_code", result.MOD);
    take(object, "guard_interval_code", result.GI);
    if (result.lock != 0) {
        take(object, "tsid", result.TSID);
        take(object, "layer", result.LAYER);
    }
    Judgement& judgement = reading.judgement;
    judgement.unrecognised = flagOf(object, "unrecognised");
    judgement.whole = verdictOf(object, "verdict");
    for (const Quantity& quantity : kQuantities)
        judgement.*quantity.verdict = verdictOf(object, quantity.verdictKey);
    return reading;
}

SurveyReading surveyReadingOf(const json& object)
{
    SurveyReading one{
        textOf(object, "point"), textOf(object, "list"), readingFrom(object), {}, {}, {}, {}, {}};
    one.merDb = realOf(object, "mer_db");
    const json& limits = at(object, "limits");
    for (const Quantity& quantity : kQuantities)
        one.bounds.*quantity.bounds = boundsOf(at(limits, quantity.key));
    for (const json& point : arrayOf(object, "constellation")) {
        if (!point.is_array() || point.size() != 2)
            refuse("constellation", "has what is no point");
        one.constellation.push_back(
            {wholeOf<int8_t>(point[0], "constellation"), wholeOf<int8_t>(point[1], "constellation")});
    }
    for (const json& sample : arrayOf(object, "delay_profile"))
        one.delayProfile.push_back(wholeOf<int8_t>(sample, "delay_profile"));
    if (!one.delayProfile.empty() && one.delayProfile.size() != VX63_DLYPRF_SAMPLES)
        refuse("delay_profile", "is not as long as one is");
    one.trouble = textOf(object, "trouble");
    return one;
}

// Those of the survey, in its order, the last one of each channel.
void arrange(SurveyResults& results, std::vector<SurveyReading>&& all)
{
    std::vector<bool> used(all.size());
    std::map<std::tuple<std::string, std::string, std::string>, std::vector<size_t>> named;
    for (size_t i = 0; i < all.size(); ++i)
        named[{all[i].point, all[i].list, all[i].reading.channel}].push_back(i);
    for (const SurveyPoint& point : results.survey.points)
        for (const SurveyList& list : point.lists)
            for (const SurveyChannel& channel : list.channels) {
                std::optional<size_t> last;
                for (const size_t i : named[{point.name, list.name, channel.name}]) {
                    if (!isReadingOf(all[i], point, list, channel))
                        continue;
                    used[i] = true;
                    last = i;
                }
                if (last)
                    results.readings.push_back(std::move(all[*last]));
            }
    results.strangers = static_cast<size_t>(std::ranges::count(used, false));
}

} // namespace

bool isReadingOf(const SurveyReading& reading, const SurveyPoint& point, const SurveyList& list,
                 const SurveyChannel& channel)
{
    return reading.point == point.name && reading.list == list.name &&
           reading.reading.channel == channel.name &&
           isNear(reading.reading.condition.ulFreq, channel.frequencyKhz) &&
           (!list.input || reading.reading.input == list.input);
}

std::string surveyLine(const Survey& survey)
{
    Json points = Json::array();
    for (const SurveyPoint& point : survey.points) {
        Json lists = Json::array();
        for (const SurveyList& list : point.lists)
            lists.push(listJson(list));
        points.push({{"point", point.name}, {"note", point.note}, {"lists", lists}});
    }
    const SurveyMeter& meter = survey.meter;
    return Json{{"kind", "survey"},
                {"time", timeJson(survey.timeMs)},
                {"site", survey.site},
                {"by", survey.by},
                {"note", survey.note},
                {"meter", Json{{"model", meter.model},
                               {"serial", meter.serial},
                               {"version", meter.version},
                               {"angle_calibration", meter.angleCalibration}}},
                {"points", points}}
        .line();
}

std::string readingLine(const SurveyReading& one)
{
    const Reading& reading = one.reading;
    Json line{{"kind", "reading"}, {"point", one.point}, {"list", one.list}};
    line.add(readingJson(reading));
    line.set("asked_system_code", reading.condition.usBdSys);
    line.set("width_khz", reading.widthKhz);
    line.set("mer_db", one.merDb ? Json(rounded(*one.merDb, 1)) : Json());
    line.set("mer_verdict", verdictJson(reading.judgement.mer));
    Json limits;
    for (const Quantity& quantity : kQuantities)
        limits.set(quantity.key, boundsJson(one.bounds.*quantity.bounds));
    line.set("limits", limits);
    Json points = Json::array();
    for (const ConstaPoint& point : one.constellation)
        points.push(Json::array({point.I, point.Q}));
    line.set("constellation", points);
    line.set("delay_profile", Json::arrayOf(one.delayProfile));
    line.set("trouble", one.trouble.empty() ? Json() : Json(one.trouble));
    return line.line();
}

SurveyResults readResults(const std::string& path, const Survey* plan)
{
    std::error_code none;
    const std::string file = std::filesystem::is_directory(path, none)
                                 ? (std::filesystem::path(path) / kResultsFile).string()
                                 : path;
    const std::string what = "cannot read the results in " + file;
    const std::string hint = "name the folder of a survey";
    const std::string contents = readWholeFile(file, kMaxFile + 1, what, hint);
    if (contents.size() > kMaxFile)
        throw Failure(kExitNoInput, what, "it is larger than 256 MiB", hint);
    SurveyResults results;
    std::vector<SurveyReading> readings;
    bool begun = false;
    size_t number = 0;
    for (size_t from = 0; from < contents.size();) {
        const size_t to = contents.find('\n', from);
        if (to == std::string::npos)
            break; // cut short
        ++number;
        try {
            const json object = json::parse(contents.begin() + static_cast<ptrdiff_t>(from),
                                            contents.begin() + static_cast<ptrdiff_t>(to));
            const std::string kind = textOf(object, "kind");
            if (kind == "survey") {
                results.survey = surveyOf(object);
                begun = true;
            } else if (kind == "reading") {
                readings.push_back(surveyReadingOf(object));
            }
        } catch (const json::exception&) {
            throw Failure(kExitData, what, format("line %zu is no JSON", number),
                          "take the line out, or " + hint);
        } catch (const std::runtime_error& error) {
            throw Failure(kExitData, what, format("line %zu: %s", number, error.what()),
                          "take the line out, or " + hint);
        }
        from = to + 1;
    }
    if (plan != nullptr) {
        const Survey last = std::move(results.survey);
        results.survey = *plan;
        results.survey.timeMs = last.timeMs;
        results.survey.meter = last.meter;
    } else if (!begun)
        throw Failure(kExitData, what, "no survey is in it", hint);
    arrange(results, std::move(readings));
    return results;
}

} // namespace tool

#include "survey/plan.h"

#include "common/failure.h"
#include "common/file.h"
#include "common/numbers.h"
#include "common/text.h"
#include "measure/channel_options.h"
#include "measure/channel_search.h"
#include "measure/frequency.h"
#include "measure/limits.h"
#include "measure/reading.h"
#include "toml/fields.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace tool {

namespace {

using tomlfile::Fields;

constexpr size_t kMaxFile = 1 << 20;
constexpr size_t kMaxChannels = 100000; // of all points: a day and more of measuring

constexpr std::string_view kPlanKeys[] = {"site", "by", "note", "lock_timeout_s", "limits", "list", "point"};
constexpr std::string_view kPointKeys[] = {"name", "note", "list"};
constexpr std::string_view kListKeys[] = {"plan",     "channels", "frequencies", "name",   "input",
                                          "expected", "capture",  "limits",      "system", "modulation",
                                          "band",     "lo",       "supply"};
constexpr const char* kSlope = "slope_db";

struct PlannedList {
    SurveyList list;
    ListOrders orders;
};

// ---- keys ----

std::string nameIn(const Fields& fields, std::optional<std::string> fallback = std::nullopt)
{
    std::string name = fields.text("name", std::move(fallback));
    if (name.empty())
        fields.fail("name", "must not be empty");
    return name;
}

// Calls what reads options of the command line with the text, or the whole number, of the key.
template <class Read>
auto asOption(const Fields& fields, const char* key, Read read)
{
    const std::string text =
        fields.isInteger(key) ? std::to_string(fields.integer(key, 0, UINT32_MAX)) : fields.text(key);
    try {
        return read(key, text);
    } catch (const WrongUsage& wrong) {
        fields.fail(key, std::string(wrong.what()).substr(wrong.option().size() + 2)); // "OPTION: WHY"
    }
}

// A failure to find what the key names is one of the key; one of the meter's settings stays.
template <class Find>
auto asFound(const Fields& fields, const char* key, Find find)
{
    try {
        return find();
    } catch (const Failure& failure) {
        if (failure.code() != kExitUsage)
            throw;
        fields.fail(key, failure.failed() + ": " + failure.why());
    }
}

// ---- limits ----

//   lowest, highest  that an edge can be
Bounds boundsIn(const Fields& fields, double lowest, double highest)
{
    std::vector<std::string_view> keys;
    for (const Edge& edge : kEdges)
        keys.push_back(edge.key);
    fields.allow(keys);
    Bounds bounds{.ofPlan = true};
    for (const Edge& edge : kEdges)
        if (fields.has(edge.key))
            bounds.*edge.value = fields.number(edge.key, lowest, highest);
    const auto [failBelow, marginalBelow, marginalAbove, failAbove, ofPlan] = bounds;
    if (failBelow && marginalBelow && *marginalBelow < *failBelow)
        fields.fail("marginal_below", "is below fail_below: nothing would be marginal");
    if (failAbove && marginalAbove && *marginalAbove > *failAbove)
        fields.fail("marginal_above", "is above fail_above: nothing would be marginal");
    const auto low = marginalBelow ? marginalBelow : failBelow;
    const auto high = marginalAbove ? marginalAbove : failAbove;
    if (low && high && *low > *high)
        fields.fail("leaves no value that passes");
    return bounds;
}

PlanLimits limitsIn(const Fields& fields, PlanLimits limits)
{
    const auto table = fields.table("limits");
    if (!table)
        return limits;
    std::vector<std::string_view> keys;
    for (const Quantity& quantity : kQuantities)
        keys.push_back(quantity.key);
    keys.push_back(kSlope);
    table->allow(keys);
    for (const Quantity& quantity : kQuantities)
        if (const auto edges = table->table(quantity.key))
            limits.*quantity.planned = boundsIn(*edges, quantity.lowest, quantity.highest);
    if (const auto edges = table->table(kSlope))
        limits.slope = boundsIn(*edges, 0, 100);
    return limits;
}

// ---- channels ----

PlanChanges changesIn(const Fields& fields)
{
    PlanChanges changes;
    if (fields.has("lo"))
        changes.ulLoFreq = asOption(fields, "lo", [](auto key, auto text) { return khzIn(key, text, 0); });
    if (fields.has("system"))
        changes.usBdSys = asOption(fields, "system", systemIn);
    if (fields.has("modulation"))
        changes.modulation = asOption(fields, "modulation", [](auto key, const std::string& text) {
            modulationIn(key, text, VX63_BDSYS_TERRESTRIAL);
            return text;
        });
    if (fields.has("supply"))
        changes.powerSupply = static_cast<int32_t>(fields.integer("supply", 0, 4));
    return changes;
}

// `key` is the one that names the channels.
void refuseWhatTheMeterRefuses(const Fields& fields, const char* key, const std::string& channel,
                               const MeasCondition& condition)
{
    const auto refusal = refusalOf(condition);
    if (!refusal)
        return;
    const bool isOscillator = std::string_view(refusal->option) == "--lo";
    const bool isModulation = std::string_view(refusal->option) == "--mod";
    fields.fail(isOscillator && fields.has("lo")           ? "lo"
                : isModulation && fields.has("modulation") ? "modulation"
                                                           : key,
                "channel " + channel + ": " + refusal->why);
}

std::vector<SurveyChannel> channelsOfPlan(const Fields& fields, const Plan& plan)
{
    const PlanChanges changes = changesIn(fields);
    const char* const key = fields.has("channels") ? "channels" : "plan";
    std::vector<ListChannel> ways = planChannels(plan, changes);
    if (fields.has("channels"))
        ways = asFound(fields, key, [&] { return pickChannels(ways, fields.text("channels"), plan); });
    if (ways.empty())
        fields.fail(key, "the plan has no channels");
    std::vector<SurveyChannel> channels;
    for (size_t i = 0; i < ways.size(); ++i) {
        const ListChannel& way = ways[i];
        refuseWhatTheMeterRefuses(fields, key, way.name, way.condition);
        if (i == 0 || ways[i - 1].group != way.group)
            channels.push_back({way.name, way.condition.ulFreq, {}});
        channels.back().ways.push_back(way.condition);
    }
    return channels;
}

std::vector<SurveyChannel> channelsOfFrequencies(const Fields& fields)
{
    const PlanChanges changes = changesIn(fields);
    MeasCondition condition{};
    condition.ulLoFreq = changes.ulLoFreq.value_or(0);
    condition.usBdSys = changes.usBdSys.value_or(VX63_BDSYS_TERRESTRIAL);
    if (!changes.modulation.empty())
        condition.usMod = modulationIn("modulation", changes.modulation, condition.usBdSys);
    condition.powerSupply = changes.powerSupply.value_or(VX63_POWER_SUPPLY_OFF);
    condition.usBand = static_cast<uint16_t>(fields.integer("band", 0, UINT16_MAX, 0));
    std::vector<SurveyChannel> channels;
    for (const std::string& text : fields.texts("frequencies")) {
        const auto khz = parseKhz(text);
        if (!khz || *khz == 0)
            fields.fail("frequencies", "'" + text +
                                           "' is not a frequency in whole kHz, as 557143, 557143kHz, "
                                           "557.143MHz and 1.03648GHz are");
        condition.ulFreq = *khz;
        const std::string name = inMhz(*khz);
        refuseWhatTheMeterRefuses(fields, "frequencies", name, condition);
        channels.push_back({name, *khz, {condition}});
    }
    if (channels.empty())
        fields.fail("frequencies", "must be at least one");
    return channels;
}

// ---- lists and points ----

void readCaptures(const Fields& fields, PlannedList& planned)
{
    const auto isAny = [&](auto suits) {
        return std::ranges::any_of(planned.list.channels, [&](const SurveyChannel& channel) {
            return std::ranges::any_of(channel.ways, suits);
        });
    };
    for (const std::string& capture : fields.texts("capture")) {
        if (capture == "constellation") {
            if (!isAny(needsLock))
                fields.fail("capture", "a level carrier has no constellation");
            planned.orders.constellation = true;
        } else if (capture == "delay-profile") {
            if (!isAny([](const MeasCondition& way) { return way.usBdSys == VX63_BDSYS_TERRESTRIAL; }))
                fields.fail("capture", "a delay profile is of terrestrial (OFDM) alone");
            planned.orders.delayProfile = true;
        } else {
            fields.fail("capture", "'" + capture + "' is none of constellation, delay-profile");
        }
    }
}

PlannedList readList(const Fields& fields, const PlanLimits& limits)
{
    fields.allow(kListKeys);
    const bool ofPlan = fields.has("plan");
    if (ofPlan == fields.has("frequencies"))
        fields.fail(ofPlan ? "frequencies" : "plan", ofPlan ? "stands beside a plan: leave out one of them"
                                                            : "is missing, and so is frequencies");
    for (const char* const key : {"channels", "band"})
        if (fields.has(key) && ofPlan != (std::string_view(key) == "channels"))
            fields.fail(key, ofPlan ? "the plan tells it" : "there is no plan that has them");
    PlannedList planned;
    SurveyList& list = planned.list;
    const Plan* plan = nullptr;
    if (ofPlan)
        plan = asOption(fields, "plan", planIn);
    list.name = nameIn(fields, plan ? std::optional(std::string(plan->name)) : std::nullopt);
    list.channels = plan ? channelsOfPlan(fields, *plan) : channelsOfFrequencies(fields);
    if (fields.has("input"))
        list.input = static_cast<uint32_t>(fields.integer("input", 0, 1));
    const bool expected = fields.flag("expected", !plan || fields.has("channels"));
    std::map<std::string_view, size_t> names;
    for (const SurveyChannel& channel : list.channels)
        ++names[channel.name];
    for (SurveyChannel& channel : list.channels) {
        channel.expected = expected;
        if (names[channel.name] > 1)
            fields.fail(plan ? "plan" : "frequencies", "channel " + channel.name + " stands there twice");
    }
    planned.orders.limits = limitsIn(fields, limits);
    list.slope = planned.orders.limits.slope.value_or(Bounds{});
    readCaptures(fields, planned);
    return planned;
}

std::vector<PlannedList> readLists(const Fields& fields, const PlanLimits& limits)
{
    std::vector<PlannedList> lists;
    for (const Fields& one : fields.tables("list")) {
        PlannedList planned = readList(one, limits);
        for (const PlannedList& other : lists)
            if (other.list.name == planned.list.name)
                one.fail("name", "a list of the name '" + planned.list.name + "' stands before");
        lists.push_back(std::move(planned));
    }
    return lists;
}

// A list that takes the input as it finds it would find that of another list.
void refuseLeftInputs(const Fields& fields, const Survey& survey)
{
    size_t all = 0;
    size_t named = 0;
    for (const SurveyPoint& point : survey.points)
        for (const SurveyList& list : point.lists) {
            ++all;
            named += list.input.has_value();
        }
    if (named != 0 && named != all)
        fields.fail("list", "some lists have an input, others do not: give it in all of them, or in none");
}

SurveyPlan surveyIn(const Fields& fields)
{
    fields.allow(kPlanKeys);
    SurveyPlan plan;
    Survey& survey = plan.survey;
    survey.site = fields.text("site");
    if (survey.site.empty())
        fields.fail("site", "must not be empty");
    survey.by = fields.text("by", "");
    survey.note = fields.text("note", "");
    plan.lockTimeoutMs = static_cast<int64_t>(fields.number("lock_timeout_s", 0, 3600, 10) * 1000);
    const PlanLimits limits = limitsIn(fields, {});
    const std::vector<PlannedList> common = readLists(fields, limits);
    const std::vector<Fields> points = fields.tables("point");
    if (points.empty())
        fields.fail("point", "is missing: where is it measured?");
    std::set<std::string> names;
    size_t channels = 0;
    for (const Fields& one : points) {
        one.allow(kPointKeys);
        SurveyPoint point{nameIn(one), one.text("note", ""), {}};
        if (!names.insert(point.name).second)
            one.fail("name", "a point of the name '" + point.name + "' stands before");
        plan.orders.emplace_back();
        for (const PlannedList& planned : one.has("list") ? readLists(one, limits) : common) {
            channels += planned.list.channels.size();
            if (channels > kMaxChannels)
                one.fail("list", format("comes to more than %zu channels with those of the points before",
                                        kMaxChannels));
            point.lists.push_back(planned.list);
            plan.orders.back().push_back(planned.orders);
        }
        if (point.lists.empty())
            one.fail("list", "is missing, here and at the top: what is measured?");
        survey.points.push_back(std::move(point));
    }
    refuseLeftInputs(fields, survey);
    return plan;
}

} // namespace

SurveyPlan readPlan(const std::string& path)
{
    const std::string what = "cannot use the plan " + path;
    const std::string text = readWholeFile(path, kMaxFile + 1, what, "check the name");
    if (text.size() > kMaxFile)
        throw Failure(kExitNoInput, what, "it is larger than 1 MiB", "check the name");
    try {
        return surveyIn(Fields(text, path));
    } catch (const tomlfile::Mistake& mistake) {
        throw Failure(kExitNoInput, "cannot use the plan", mistake.what(), "see vx63-survey(1), PLAN");
    }
}

} // namespace tool

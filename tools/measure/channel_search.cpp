#include "measure/channel_search.h"

#include "common/failure.h"
#include "common/text.h"
#include "measure/frequency.h"
#include "measure/limits.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <tuple>
#include <utility>

namespace tool {

namespace {

struct Found {
    const Plan* plan;
    ListChannel channel;
};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string lowered(std::string_view name)
{
    std::string text(name);
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

// What is left of a name when all that people leave out or add is gone.
std::string plainName(std::string_view name)
{
    std::string joined;
    for (size_t i = 0; i < name.size(); ++i) {
        const bool joinsNumbers =
            i > 0 && i + 1 < name.size() && isDigit(name[i - 1]) && isDigit(name[i + 1]);
        if ((name[i] != ' ' && name[i] != '-') || joinsNumbers)
            joined += name[i];
    }
    std::string plain;
    for (size_t i = 0; i < joined.size(); ++i) {
        const bool begins = plain.empty() || (!isDigit(plain.back()) && plain.back() != '.');
        if (joined[i] != '0' || !begins || i + 1 == joined.size() || !isDigit(joined[i + 1]))
            plain += joined[i];
    }
    return lowered(plain);
}

// Where the channels of the name stand: of its exact name if there are any. Of each the first way.
std::vector<size_t> placesOf(const std::vector<ListChannel>& channels, std::string_view name)
{
    std::vector<size_t> exact;
    std::vector<size_t> alike;
    for (size_t i = 0; i < channels.size(); ++i) {
        if (i > 0 && channels[i].group == channels[i - 1].group)
            continue;
        if (lowered(channels[i].name) == lowered(name))
            exact.push_back(i);
        else if (!channels[i].name.empty() && sameChannelName(channels[i].name, name))
            alike.push_back(i);
    }
    return exact.empty() ? alike : exact;
}

std::vector<Found> foundIn(const Plan& plan, const std::string& name, const PlanChanges& changes,
                           Missing missing)
{
    const std::vector<ListChannel> channels = planChannels(plan, changes, missing);
    std::vector<Found> found;
    for (const size_t place : placesOf(channels, name))
        found.push_back({&plan, channels[place]});
    return found;
}

// How well a plan suits the system.
int suits(const Plan& plan, uint16_t system)
{
    if (plan.system == system)
        return 2;
    const bool hasItToo = (plan.form == PlanForm::catv && system == VX63_BDSYS_TERRESTRIAL) ||
                          (plan.system == VX63_BDSYS_SATELLITE && system == VX63_BDSYS_SATELLITE_2);
    return hasItToo ? 1 : 0;
}

bool isSame(const ListChannel& a, const ListChannel& b)
{
    const auto values = [](const MeasCondition& condition) {
        return std::tuple(condition.ulFreq, condition.ulLoFreq, condition.usBdSys, condition.usBand,
                          condition.powerSupply);
    };
    return values(a.condition) == values(b.condition);
}

// Leaves those of the plans that suit best, the terrestrial one before others, and of plans that tell the
// same the first one.
void narrow(std::vector<Found>& found, std::optional<uint16_t> system)
{
    if (system) {
        int best = 0;
        for (const Found& one : found)
            best = std::max(best, suits(*one.plan, *system));
        std::erase_if(found, [&](const Found& one) { return suits(*one.plan, *system) < best; });
    }
    // Its numbers are those that people know; cable plans and transponders repeat them.
    const auto isTerrestrial = [](const Found& one) { return one.plan->system == VX63_BDSYS_TERRESTRIAL; };
    if (std::ranges::any_of(found, isTerrestrial))
        std::erase_if(found, [&](const Found& one) { return !isTerrestrial(one); });
    std::vector<Found> different;
    for (Found& one : found)
        if (std::ranges::none_of(different,
                                 [&](const Found& other) { return isSame(one.channel, other.channel); }))
            different.push_back(std::move(one));
    found = std::move(different);
}

[[noreturn]] void refuse(const std::string& name, const std::string& why, const std::string& hint)
{
    throw Failure(kExitUsage, "cannot tune channel '" + name + "'", why, hint);
}

[[noreturn]] void refuseUnknown(const std::string& name, const Plan* plan)
{
    if (plan != nullptr)
        refuse(name, "plan " + std::string(plan->name) + " has none of that name",
               "see 'vx63 channels " + std::string(plan->name) + "'");
    refuse(name, "no plan has it", "see 'vx63 channels', or give --freq");
}

[[noreturn]] void refuseSeveral(const std::string& name, const std::vector<Found>& found)
{
    std::string names;
    std::string plans;
    const Plan* last = nullptr;
    for (const Found& one : found) {
        names += (names.empty() ? "" : " or ") + one.channel.name + " at " +
                 megahertz(one.channel.condition.ulFreq);
        if (one.plan != last)
            plans += (plans.empty() ? "" : ", ") + std::string(one.plan->name);
        last = one.plan;
    }
    if (last == found.front().plan)
        refuse(name, "it can be " + names + " of plan " + plans, "give the whole name, or --freq");
    refuse(name, "it is in " + plans, "say which with --plan");
}

} // namespace

bool sameChannelName(std::string_view a, std::string_view b)
{
    return plainName(a) == plainName(b);
}

FoundChannel findChannel(const std::string& name, const Plan* plan, PlanChanges changes,
                         std::optional<uint16_t> system)
{
    std::vector<Found> found;
    std::optional<Failure> unreadable; // a plan that may have the channel
    for (const Plan& one : plans()) {
        if (plan != nullptr && plan != &one)
            continue;
        try {
            std::ranges::move(foundIn(one, name, {}, Missing::silent), std::back_inserter(found));
        } catch (const Failure& failure) {
            if (system.value_or(VX63_BDSYS_TERRESTRIAL) == one.system)
                throw; // it would go before others
            unreadable = unreadable.value_or(failure);
        }
    }
    if (plan == nullptr)
        narrow(found, system);
    if (found.empty() && unreadable)
        throw *unreadable;
    if (found.empty())
        refuseUnknown(name, plan);
    if (found.size() > 1)
        refuseSeveral(name, found);
    const Found& only = found.front();
    if (system && suits(*only.plan, *system) > 0)
        changes.usBdSys = system;
    // Again, as the command line changes it, and with a word where the file is missing.
    for (const ListChannel& channel : planChannels(*only.plan, changes))
        if (channel.group == only.channel.group)
            return {channel, only.plan, changes};
    refuse(name, "plan " + std::string(only.plan->name) + " has it in no such way",
           "check --system and --mod");
}

FoundChannel neighbourOf(const FoundChannel& channel, int steps)
{
    std::vector<ListChannel> ways; // the first one of each channel
    for (ListChannel& one : planChannels(*channel.plan, channel.changes, Missing::silent))
        if (ways.empty() || one.group != ways.back().group)
            ways.push_back(std::move(one));
    const auto place = std::ranges::find(ways, channel.group, &ListChannel::group) - ways.begin();
    const auto last = static_cast<ptrdiff_t>(ways.size()) - 1;
    if (place > last) // the plan has changed
        return channel;
    return {ways[static_cast<size_t>(std::clamp<ptrdiff_t>(place + steps, 0, last))], channel.plan,
            channel.changes};
}

void refuseOtherChannel(const std::string& name, const Plan* plan, const MeasCondition& condition)
{
    std::vector<Found> found;
    for (const Plan& one : plans()) {
        if (plan != nullptr && plan != &one)
            continue;
        try {
            std::ranges::move(foundIn(one, name, {}, Missing::silent), std::back_inserter(found));
        } catch (const Failure&) { // the frequency is given: the plan is not needed
        }
    }
    const auto agrees = [&](const Found& one) {
        const MeasCondition& planned = one.channel.condition;
        return isNear(planned.ulFreq, condition.ulFreq) || isNear(tunerKhz(planned), tunerKhz(condition));
    };
    if (found.empty() || std::ranges::any_of(found, agrees))
        return;
    narrow(found, std::nullopt);
    std::string places;
    for (const Found& one : found)
        places += (places.empty() ? "" : ", ") + megahertz(one.channel.condition.ulFreq) + " in " +
                  std::string(one.plan->name);
    refuse(name, "--freq is " + megahertz(condition.ulFreq) + ", the channel is at " + places,
           "leave out one of them");
}

std::vector<ListChannel> pickChannels(const std::vector<ListChannel>& channels, const std::string& names,
                                      const Plan& plan)
{
    const auto placeOf = [&](const std::string& name) -> std::optional<size_t> {
        const std::vector<size_t> places = placesOf(channels, name);
        if (places.size() > 1) {
            std::vector<Found> found;
            for (const size_t place : places)
                found.push_back({&plan, channels[place]});
            refuseSeveral(name, found);
        }
        return places.empty() ? std::nullopt : std::optional(places.front());
    };
    std::vector<bool> picked(channels.size());
    const auto pick = [&](size_t first, size_t last) {
        for (size_t i = 0; i < channels.size(); ++i)
            if (channels[i].group >= channels[first].group && channels[i].group <= channels[last].group)
                picked[i] = true;
    };
    // A hyphen can be part of a name.
    const auto pickNamed = [&](const std::string& name) {
        if (const auto place = placeOf(name)) {
            pick(*place, *place);
            return true;
        }
        for (size_t at = name.find('-'); at != std::string::npos; at = name.find('-', at + 1)) {
            const auto first = placeOf(name.substr(0, at));
            const auto last = placeOf(name.substr(at + 1));
            if (first && last && *first <= *last) {
                pick(*first, *last);
                return true;
            }
        }
        return false;
    };
    for (size_t from = 0; from <= names.size();) {
        const size_t to = std::min(names.find(',', from), names.size());
        const std::string name = names.substr(from, to - from);
        if (!pickNamed(name))
            refuseUnknown(name, &plan);
        from = to + 1;
    }
    std::vector<ListChannel> result;
    for (size_t i = 0; i < channels.size(); ++i)
        if (picked[i])
            result.push_back(channels[i]);
    return result;
}

} // namespace tool

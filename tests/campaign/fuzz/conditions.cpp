// Reads any text as a file of conditions (JSON): a mistake is told with its place, what is accepted the meter
// takes, with the values that are given.
#include "told.h"

#include "measure/conditions_file.h"
#include "measure/limits.h"

#include <nlohmann/json.hpp>

using held::require;
using namespace tool;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const held::File file(text);
    std::vector<ListChannel> channels;
    try {
        channels = readConditions(file.path());
    } catch (const Failure& failure) {
        held::judgeFailure(failure);
        require(failure.code() == kExitNoInput, "another code", failure.what());
        return 0;
    }
    const auto given = nlohmann::json::parse(text);
    require(!channels.empty() && channels.size() == given.size(), "not all channels, or more", text);
    for (const ListChannel& channel : channels) {
        const MeasCondition& condition = channel.condition;
        const nlohmann::json& object = given.at(channel.group);
        const auto isAsGiven = [&](const char* key, int64_t value) {
            const auto found = object.find(key);
            require(found == object.end() || !found->is_number() || *found == value, key, text);
        };
        isAsGiven("frequency_khz", condition.ulFreq);
        isAsGiven("lo_khz", condition.ulLoFreq);
        isAsGiven("system", condition.usBdSys);
        isAsGiven("band", condition.usBand);
        isAsGiven("modulation", condition.usMod);
        isAsGiven("condition", condition.usCondition);
        isAsGiven("supply", condition.powerSupply);
        isAsGiven("output", condition.ucOutputEnb);
        require(!channel.name.empty(), "a channel without a name", text);
        require(!refusalOf(channel.condition), "a channel that the meter refuses", text);
        require(channel.condition.powerSupply >= 0 && channel.condition.powerSupply <= 4, "the supply", text);
    }
    return 0;
}

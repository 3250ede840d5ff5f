// What another process may say in answer to a state query, as text for people: any bytes are told on
// printable lines or refused, in bounded time. And the state as it is told, of a meter whose memory holds any
// bytes.
#include "held.h"
#include "process/state_json.h"
#include "scene/load.h"

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <stdexcept>

using held::require;
using namespace vmeter;

namespace {

constexpr int kDeepest = 9; // a state has three; the ninth may be there and empty

int depthOf(const std::string& json)
{
    int depth = 0;
    int deepest = 0;
    bool quoted = false;
    for (size_t i = 0; i < json.size(); ++i) {
        if (quoted && json[i] == '\\')
            ++i;
        else if (json[i] == '"')
            quoted = !quoted;
        else if (!quoted && (json[i] == '{' || json[i] == '['))
            deepest = std::max(deepest, ++depth);
        else if (!quoted && (json[i] == '}' || json[i] == ']'))
            --depth;
    }
    return deepest;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    if ((data[0] & 1) != 0) {
        static const Scene scene = defaultScene();
        State state{};
        std::memcpy(static_cast<void*>(&state), data + 1, std::min(size - 1, sizeof state));
        if (size > 1) // the device lies behind the long list
            std::memcpy(static_cast<void*>(&state.device), data + 1, std::min(size - 1, sizeof state.device));
        const std::string json = stateJson(scene, state, 1);
        require(json.ends_with('\n') && held::isPrintable(json.substr(0, json.size() - 1)),
                "the state is not one printable line", json);
        require(nlohmann::json::accept(json), "the state is no JSON", json);
        require(!stateText(json).empty(), "the state as text", json);
        return 0;
    }
    const std::string said(reinterpret_cast<const char*>(data + 1), size - 1);
    std::string text;
    try {
        text = stateText(said);
    } catch (const std::runtime_error&) {
        return 0;
    }
    require(depthOf(said) <= kDeepest, "a state that is deeper than one can be", said);
    for (size_t from = 0; from < text.size();) {
        const size_t to = text.find('\n', from);
        require(to != std::string::npos && held::isPrintable(std::string_view(text).substr(from, to - from)),
                "a line of the state is not printable", text);
        from = to + 1;
    }
    return 0;
}

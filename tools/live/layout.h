// What vx63 live shows, drawn into a grid: it depends on nothing but what it is given.
#pragma once

#include "live/grid.h"
#include "live/state.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace tool {

inline constexpr size_t kLeastColumns = 40;
inline constexpr size_t kLeastRows = 12;

struct View {
    size_t columns;
    size_t rows;
    bool unicode;
    int64_t nowMs;                         // Unix time, milliseconds
    std::optional<std::string> input = {}; // what is typed for a channel, while it is
};

Grid layout(const LiveState& state, const View& view);

} // namespace tool

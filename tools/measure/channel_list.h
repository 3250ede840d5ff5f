// A list of channels that the meter measures: in turn, or once as a scan.
#pragma once

#include "common/output.h"
#include "libvx63.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tool {

struct ListChannel {
    std::string name;
    MeasCondition condition;
    size_t group;             // of the ways in which one channel can be occupied; rising
    char polarisation = '\0'; // of a satellite's: R, L, H or V
    uint32_t widthKhz = 0;    // 0: not known
};

enum class ListKind { multi, scan };

// Measures every channel once and stops. The index of a channel has 8 bits: longer lists take several runs.
// Fewer results than channels: an interruption. Throws Failure.
std::vector<MultiMeasResult> measureList(ListKind kind, uint8_t ucDispType,
                                         const std::vector<ListChannel>& channels, Progress& progress);

} // namespace tool

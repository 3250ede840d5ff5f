// Stands in for makeFault in the tests of the scene: keeps what it was called with.
#pragma once

#include "faults.h"

#include <string>
#include <vector>

struct FaultCall {
    std::string service;
    std::string command;
    uint32_t first;
    uint32_t last;
    double probability;
    std::string kind;
    std::optional<uint32_t> value;
};

inline std::vector<FaultCall> g_faultCalls;

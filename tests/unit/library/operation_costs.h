// What each exported operation costs, typed.
#pragma once

#include "cost_stand_ins.h"

#include <cstdint>
#include <functional>
#include <string>

namespace vx63test {

struct OperationCost {
    std::string name; // of the operation, and in brackets what tells it from its other rows
    int lines;        // that it logs
    int exchanges;
    Calls others; // beside those that each line and each exchange takes
    int32_t (*call)();
    int32_t result = 0;
    Service service = Service::Accepts;
};

// All calls of libc and the platform.
Calls expectedCalls(const OperationCost& operation);

// Every operation by itself, with an empty log: those that succeed, then some that fail.
void forEachOperation(const std::function<void(const OperationCost& operation)>& check);

} // namespace vx63test

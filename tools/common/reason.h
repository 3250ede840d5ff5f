// Why a call of the library was not answered, or not as it should.
#pragma once

#include "common/evidence.h"
#include "common/failure.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace tool {

// A call that came back with VX63_ERR_COMM.
struct FailedCall {
    std::chrono::system_clock::time_point start;
    bool slow = false; // so late that it has met a time-out
    bool made = true;  // false: it was not even made, since nobody is there
};

// What the library's log tells of the call; nothing where it cannot be read.
std::optional<Evidence> loggedEvidence(const FailedCall& call);

// Finds the reason from the library's log, from who serves the queues and by asking: whether the meter
// sleeps, or whether another service and the silent one answer now. Takes 10 s, 20 s where `again` is not
// answered either.
//   again  asks the silent service instead of a harmless read
Failure reasonOf(const FailedCall& call, const std::string& what,
                 const std::function<int32_t()>& again = nullptr);

// Whether the meter, or its measuring part, sleeps.
std::optional<Failure> sleepOf(const std::string& what);

// Where several services were asked and none answers: no meter, or one that restarts.
Failure nobodyAnswers(const std::string& what);

} // namespace tool

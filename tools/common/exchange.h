// Calls of the library, as a command makes them.
#pragma once

#include "common/failure.h"
#include "common/reason.h"

#include <functional>
#include <string>

namespace tool {

// Calls the library, and again when an answer to somebody's earlier, abandoned call was in the way: such an
// answer lies in the queue of our process id and makes the next call fail at once. Where there is no queue of
// any service before the first call of all, none is ever made. Returns the result.
int32_t exchange(const std::function<int32_t()>& call);

// Whether answers lie in our queue ahead of each new one.
bool isBehind();

// Takes answers to earlier, abandoned calls out of the queue of the process id, until none has come for a
// while: after a service was silent, each request that lay before it has one.
void forgetAnswers(int32_t id, uint32_t quietMs = 300);

// The last call, if it came back with VX63_ERR_COMM.
const FailedCall& failedCall();

// What the negative result of the last call means; asks the services for the reason of VX63_ERR_COMM.
//   again  see reasonOf()
Failure failureOf(int32_t result, const std::string& what, const std::function<int32_t()>& again = nullptr);

// exchange(), with a negative result thrown as Failure.
void require(const std::string& what, const std::function<int32_t()>& call);

// For a call to the system service that must not be made twice: it is made once, and only after a harmless
// read has shown that the service answers and that no answer to an earlier call is in the way: those of a
// vx63 that was killed with this process id are taken out. Throws Failure.
void requireOnce(int32_t id, const std::string& what, const std::function<int32_t()>& call);

} // namespace tool

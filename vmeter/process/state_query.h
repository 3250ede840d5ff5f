// Asking a running meter for its state: its supervisor answers on the socket that claims the queues, so that
// whoever shares the queues finds it and nobody else does.
#pragma once

#include "process/descriptor.h"

#include <string>

namespace vmeter {

// Answers all that ask now; `claim` is the descriptor of claimQueues(). Never waits.
void answerQueries(int claim, const std::string& state);

// Asks the meter that serves the queues here. Throws Failure.
std::string queryState();

} // namespace vmeter

// Whether anybody serves the queues of the services, and what lies in those of others. Only a PC's platform
// can tell; where it cannot be told, everybody counts as served, and every queue as empty.
#pragma once

#include "lmsg_served.h"

#include <cstdint>
#include <optional>

namespace tool {

// The service's process does not run.
bool isUnserved(uint8_t service);

// No service's process runs.
bool isNobodyThere();

// Not even the queues exist: no service has run here. Quicker than isNobodyThere().
bool isNothingThere();

// The queue of a process id; nothing where that cannot be told.
std::optional<LmsgQueue> queueOf(uint8_t id);

} // namespace tool

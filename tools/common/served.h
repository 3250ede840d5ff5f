// Whether anybody serves the queues of the services. Only a PC's platform can tell; where it cannot be told,
// everybody counts as served.
#pragma once

#include <cstdint>

namespace tool {

// The service's process does not run.
bool isUnserved(uint8_t service);

// No service's process runs.
bool isNobodyThere();

// Not even the queues exist: no service has run here. Quicker than isNobodyThere().
bool isNothingThere();

} // namespace tool

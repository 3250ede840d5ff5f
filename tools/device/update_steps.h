// How far a program update is. The meter asks for the same request again as long as the update goes on; the
// library does so without a word and comes back at the end.
#pragma once

#include <cstdint>

namespace tool {

// Requests for an update that this program has sent.
uint32_t updateRequests();

} // namespace tool

#pragma once

namespace bench {

// Ends the process where something that a comparison needs has failed, and says why: errno tells without
// `why`.
void require(bool good, const char* what, const char* why = nullptr);

} // namespace bench

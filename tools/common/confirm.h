// Asking before something is lost.
#pragma once

#include <string>

namespace tool {

// Returns when `yes`, or when somebody on a terminal agrees; no answer means no. Throws Failure otherwise.
//   question  "Delete the set TOKYO?"
void confirm(bool yes, const std::string& question);

} // namespace tool

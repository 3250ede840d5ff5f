// What a call says on standard error, kept from the terminal.
#pragma once

#include <functional>
#include <string>

namespace tool {

// Makes the call while standard error, that of its child processes too, goes into memory; `said` gets the
// beginning of it. Where that is not possible the call is made all the same and `said` stays empty.
int32_t overhear(const std::function<int32_t()>& call, std::string& said);

} // namespace tool

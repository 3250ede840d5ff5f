// The meter's state as people and programs read it. docs/services.md tells every key.
#pragma once

#include "model/meter.h"

#include <cstdint>
#include <string>

namespace vmeter {

// One line of JSON, newline included; `nowMs` as steadyMs() gives it.
std::string stateJson(const Scene& scene, const State& state, uint64_t nowMs);

// The same for people: a value a line. Throws std::runtime_error when `json` is none.
std::string stateText(const std::string& json);

} // namespace vmeter

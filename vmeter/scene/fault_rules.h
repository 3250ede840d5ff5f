// Fault rules as text, in a scene file or behind --fault.
#pragma once

#include "model/fault_rule.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vmeter {

// The parts of a rule as text, checked and put together; "service" and "kind" are needed, an empty
// "command" means every command. Throws std::invalid_argument that says what is wrong.
FaultRule makeFault(std::string_view service, std::string_view command, uint32_t first, uint32_t last,
                    double probability, std::string_view kind, std::optional<uint32_t> value);

// SERVICE[/COMMAND][:FIRST[-[LAST]]]=KIND[,VALUE][@PROBABILITY], e.g. "meas/0x104:2-5=late,300".
// Throws std::invalid_argument that says what is wrong.
FaultRule parseFault(const std::string& text);

std::string_view faultName(FaultKind kind);

// The value of a rule, or the default of the kind that it comes to: never FaultKind::random.
uint32_t valueOf(const FaultRule& rule, FaultKind kind);

} // namespace vmeter

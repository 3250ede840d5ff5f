// The device service's report on the meter itself.
#pragma once

#include "service.h"

namespace vmeter {

Body deviceStatus(Meter& meter, std::span<const uint8_t> request);

} // namespace vmeter

// Switched off, rebooting, in standby: what a meter does not do then.
#pragma once

#include "model/meter.h"

#include <cstdint>
#include <string_view>

namespace vmeter {

// Real time in milliseconds, the same for all processes. A reboot is measured by it: no request goes on in
// the meanwhile that could move the simulated time.
uint64_t steadyMs();

// Why the services of the meter do not answer; empty: they do.
std::string_view reasonForSilence(const DeviceState& device, uint64_t nowMs);

// Whether the meter sleeps through a command; its answer is kRetStandby alone.
bool sleepsThrough(const DeviceState& device, uint8_t ucProcId, uint16_t usCmd);

// Measurements end, the antenna is without supply; the chosen input stays.
void fallAsleep(State& state, Standby standby);

// From now on the services are silent for the time of a reboot, and then as after switching on: what a
// meter keeps in its memory stays.
void reboot(Meter& meter, uint64_t nowMs);

} // namespace vmeter

// The memory that the five service processes share: the meter's state and what must outlive a service
// process that dies.
#pragma once

#include "model/meter.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace vmeter {

// Made before the services are forked. A process killed in the middle of a call leaves the state as it was
// before that call, and hinders nobody.
class SharedMeter {
public:
    // Throws std::system_error.
    SharedMeter(std::size_t services, std::size_t faultRules);
    ~SharedMeter();
    SharedMeter(const SharedMeter&) = delete;
    SharedMeter& operator=(const SharedMeter&) = delete;

    // Calls `change` with the state locked; its changes count once it has returned. Gives the simulated
    // time after it.
    uint64_t update(const std::function<void(State&)>& change);

    State state();
    // Nothing if the state stays locked for a second, as it does by a process suspended in the middle of a
    // call.
    std::optional<State> stateInTime();
    uint64_t simMs();

    // Requests counted so far, one number per fault rule.
    std::span<std::atomic<uint32_t>> faultCounts();

    // Milliseconds after which a service that is about to end on purpose wants to be back; -1: not on
    // purpose.
    std::atomic<int64_t>& comeBackMs(std::size_t service);

private:
    struct Memory;
    class Lock;

    std::size_t m_size;
    std::size_t m_faultRules;
    Memory* m_memory;
    std::atomic<int64_t>* m_comeBackMs;
    std::atomic<uint32_t>* m_faultCounts;
};

} // namespace vmeter

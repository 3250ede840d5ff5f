// The trace: every message between clients and services as a line of JSON.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace vmeter {

// What is said of a message beside its bytes; empty: nothing.
struct TraceRemark {
    std::string_view fault; // the fault that was done to it
    std::string note;       // why it was ignored or dropped, what the service did
};

class Trace {
public:
    // Writes to a descriptor opened with O_APPEND; -1: no trace.
    explicit Trace(int descriptor) : m_descriptor(descriptor) {}

    // One message, header and body, as it lies in the queue. `ucProcId` is the service's side of it. A line
    // that cannot be written is lost, nothing else.
    void write(uint8_t ucProcId, std::span<const uint8_t> message, uint64_t simMs,
               const TraceRemark& remark) const;

private:
    int m_descriptor;
};

// The line for a message, newline included; `seconds` is the wall clock.
std::string traceLine(double seconds, uint8_t ucProcId, std::span<const uint8_t> message, uint64_t simMs,
                      const TraceRemark& remark);

} // namespace vmeter

// The five services, and what each can be asked at any time without changing anything.
#pragma once

#include <cstdint>
#include <span>

namespace tool {

// What an answer that was accepted looks like.
enum class Sense { good, empty, none };

struct Service {
    const char* name;       // "Device service"
    const char* word;       // as in a fault rule of vx63-vmeter
    uint8_t id;             // its process id,
    const char* process;    // and the name of it
    uint16_t command;       // of the question
    int32_t (*ask)(Sense&); // the cheapest call that changes nothing
};
std::span<const Service> services();

// The service of that process id, or null.
const Service* serviceOf(uint8_t id);

} // namespace tool

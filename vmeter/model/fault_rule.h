// A fault that a scene or --fault asks for: what goes wrong, in which service, at which requests.
#pragma once

#include <cstdint>
#include <optional>

namespace vmeter {

enum class FaultKind {
    silence,   // no answer
    late,      // the answer comes value milliseconds late; other requests are served meanwhile
    twice,     // the answer is sent twice
    refuse,    // transport refusal: usOptOrRet = value
    ret,       // ucRet = value
    wrong,     // the answer carries command code value instead of its own
    stray,     // a request to the client, of command code value, comes before the answer
    cut,       // the body is cut to value bytes
    oversized, // usDataLen claims value bytes, more than the message carries
    garbage,   // seeded random bytes in place of the body
    die,       // the service process ends without an answer and comes back after value milliseconds
    random     // one of the above, drawn by the seed for each request
};

struct FaultRule {
    uint8_t ucProcId = 0;
    std::optional<uint16_t> usCmd; // none: every command of the service
    uint32_t first = 1;            // requests that this rule matches are counted from 1
    uint32_t last = UINT32_MAX;
    double probability = 1.0; // chance that a counted request is hit, drawn by the seed
    FaultKind kind = FaultKind::silence;
    std::optional<uint32_t> value; // none: the default of the kind
};

} // namespace vmeter

// The shape of an operation that asks a service: log and check the arguments; fill a zeroed wire struct;
// one exchange; judge ucRet and convert; log the end. The pieces here log in the operation's name.
#pragma once

#include "frame/log.h"
#include "frame/wire.h"

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace vx63 {

// What is constant about a request.
struct Request {
    uint8_t ucDstId;
    uint16_t usCmd;
    uint32_t ulTimeout;  // milliseconds
    char commFailed[16]; // what the line about a failed exchange starts with
};

template <class Body>
concept WireBody = std::is_trivially_copyable_v<Body> && sizeof(Body) <= wire::kBodySize;

// A response body: room for the largest. The exchange fills it, with zero where the response carried nothing.
struct Response {
    alignas(8) uint8_t bytes[wire::kBodySize];

    uint8_t ucRet() const { return bytes[0]; }

    template <WireBody Body>
    Body as() const
    {
        Body body;
        memcpy(&body, bytes, sizeof body);
        return body;
    }

    // Of a body too large to be copied: one field.
    template <class Field>
    Field field(size_t offset) const
    {
        Field field;
        memcpy(&field, bytes + offset, sizeof field);
        return field;
    }
};

// The rule by which a service's ucRet becomes a result; a failure is logged.
using Rule = int32_t(uint8_t ucRet, Caller caller);

Rule judgeNothing;    // the response has no ucRet, or is judged elsewhere
Rule judge;           // 0 is success
Rule judgeParameter;  // as judge; 2 is a parameter error
Rule judgeMeas;       // as judgeParameter; 7 is success
Rule judgeMeasResult; // as judgeMeas; 3 is a power-supply error

// Exchanges a request for its response and judges that. Returns a result code; what failed is logged.
int32_t exchangeBytes(const Request& request, const void* body, uint16_t length, Response& response,
                      Rule& rule, Caller caller);

// The calling thread's, for a response that is judged and nothing else: it spares the stack.
Response& judgedResponse();

template <WireBody Body>
int32_t exchange(const Request& request, const Body& body, Response& response, Rule& rule, Caller caller = {})
{
    return exchangeBytes(request, &body, sizeof body, response, rule, caller);
}

template <WireBody Body>
int32_t exchange(const Request& request, const Body& body, Rule& rule, Caller caller = {})
{
    return exchangeBytes(request, &body, sizeof body, judgedResponse(), rule, caller);
}

// Logs the end of an operation and returns its result. A log statement like logLine: the line is its own.
int32_t logEnd(int32_t vx63_err, Site at = {});

} // namespace vx63

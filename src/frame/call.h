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
    uint32_t ulTimeout;     // milliseconds
    const char* commFailed; // what the line about a failed exchange starts with
};

// A response body: room for the largest, zero where the response carried nothing.
struct Response {
    alignas(8) uint8_t bytes[wire::kBodySize] = {};

    uint8_t ucRet() const { return bytes[0]; }

    template <class Body>
    Body as() const
    {
        static_assert(std::is_trivially_copyable_v<Body> && sizeof(Body) <= sizeof bytes);
        Body body;
        memcpy(&body, bytes, sizeof body);
        return body;
    }
};

// Exchanges a request for its response. Returns VX63_OK, or the transport's code, logged.
int32_t exchangeBytes(const Request& request, const void* body, uint16_t length, Response& response,
                      Caller caller);

template <class Body>
int32_t exchange(const Request& request, const Body& body, Response& response, Caller caller = {})
{
    static_assert(std::is_trivially_copyable_v<Body> && sizeof(Body) <= wire::kBodySize);
    return exchangeBytes(request, &body, sizeof body, response, caller);
}

// The rules by which a service's ucRet becomes a result; a failure is logged.
int32_t judge(uint8_t ucRet, Caller caller = {});           // 0 is success
int32_t judgeParameter(uint8_t ucRet, Caller caller = {});  // as judge; 2 is a parameter error
int32_t judgeMeas(uint8_t ucRet, Caller caller = {});       // as judgeParameter; 7 is success
int32_t judgeMeasResult(uint8_t ucRet, Caller caller = {}); // as judgeMeas; 3 is a power-supply error

// Logs the end of an operation and returns its result. A log statement like logLine: the line is its own.
int32_t logEnd(int32_t vx63_err, Site at = {});

} // namespace vx63

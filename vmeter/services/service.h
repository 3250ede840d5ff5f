// A service of the virtual meter: a process id, a name, and one handler per command. This is all that a
// new command needs: a handler in a file of its service, and its row in the service's table.
#pragma once

#include "model/meter.h"

#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>
#include <vector>

namespace vmeter {

// Body of a request or a response, without the message header.
using Body = std::vector<uint8_t>;

// Answers one request. Called with the meter's state locked and its clock advanced; must not block.
using Handler = Body (*)(Meter& meter, std::span<const uint8_t> request);

struct Command {
    uint16_t usCmd;
    const char* name; // in the trace and in fault rules
    Handler handler;
};

struct Service {
    uint8_t ucProcId;
    const char* name; // "sys", "dev", "key", "buz", "meas"
    std::span<const Command> commands;
};

extern const Service kSystemService;
extern const Service kDeviceService;
extern const Service kKeyService;
extern const Service kBuzzerService;
extern const Service kMeasurementService;

inline constexpr const Service* kServices[] = {&kSystemService, &kDeviceService, &kKeyService,
                                               &kBuzzerService, &kMeasurementService};

// The request body as its wire struct; bytes that the request did not carry are 0.
template <class T>
T bodyAs(std::span<const uint8_t> request)
{
    static_assert(std::is_trivially_copyable_v<T>);
    T value{};
    if (!request.empty()) // an empty one may be a null pointer
        std::memcpy(&value, request.data(), request.size() < sizeof value ? request.size() : sizeof value);
    return value;
}

// A wire struct as a response body.
template <class T>
Body toBody(const T& value)
{
    static_assert(std::is_trivially_copyable_v<T>);
    Body body(sizeof value);
    std::memcpy(body.data(), &value, sizeof value);
    return body;
}

} // namespace vmeter

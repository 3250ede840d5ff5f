// The result bytes that the services give, and the answers that carry nothing else.
#pragma once

#include "services/service.h"

#include "frame/wire.h"

namespace vmeter {

inline constexpr uint8_t kRetOk = 0;
inline constexpr uint8_t kRetError = 1;
inline constexpr uint8_t kRetParameter = 2;
inline constexpr uint8_t kRetPowerSupply = 3;
inline constexpr uint8_t kRetBusy = 4;   // something else runs on the tuner
inline constexpr uint8_t kRetNotNow = 4; // the state of the meter forbids it
inline constexpr uint8_t kRetNotRunning = 5;
inline constexpr uint8_t kRetStandby = 6;

inline Body resultBody(uint8_t ucRet)
{
    return toBody(vx63::wire::ResultResponse{.ucRet = ucRet, .ucReserved = {}});
}

// The answer of a larger response that carries no more than its result: the rest is 0.
template <class Response>
Body refusalBody(uint8_t ucRet)
{
    Response response{};
    response.ucRet = ucRet;
    return toBody(response);
}

} // namespace vmeter

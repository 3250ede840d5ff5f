#include "common/clock.h"

#include <chrono>

namespace tool {

int64_t unixTimeMs()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::floor<std::chrono::milliseconds>(sinceEpoch).count();
}

tm localTime(int64_t unixSeconds)
{
    const auto seconds = static_cast<time_t>(unixSeconds);
    tm local{};
    return localtime_r(&seconds, &local) != nullptr ? local : tm{}; // what failed has filled a part
}

} // namespace tool

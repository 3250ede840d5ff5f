#include "live/tone.h"

#include <algorithm>
#include <cmath>

namespace tool {

std::optional<std::chrono::milliseconds> clickInterval(const MultiMeasResult& result)
{
    if (!hasSignal(result))
        return std::nullopt;
    const double clicksPerSecond = std::min(0.5 * std::exp2(result.CNR / 100.0), 8.0);
    return std::chrono::milliseconds(std::lround(1000 / clicksPerSecond));
}

} // namespace tool

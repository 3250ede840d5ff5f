#include "live/state.h"

#include <algorithm>

namespace tool {

void History::add(const Reading& reading)
{
    const Sample sample{reading.timeMs, reading.result.LEVEL / 10.0, reading.result.CNR / 10.0};
    levelPeak = std::max(levelPeak.value_or(0), *sample.level);
    cnPeak = std::max(cnPeak.value_or(0), *sample.cn);
    push(sample);
}

void History::interrupt(int64_t timeMs)
{
    push({timeMs, {}, {}});
}

void History::push(const Sample& sample)
{
    trace.push_back(sample);
    if (trace.size() > kMost)
        trace.pop_front();
}

} // namespace tool

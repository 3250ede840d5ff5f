#include "common/running.h"

#include "common/exchange.h"
#include "common/output.h"
#include "libvx63.h"

#include <utility>

namespace tool {

Running::Running(std::string name, const Call& start, Call stop, bool inSteps)
    : m_name(std::move(name)), m_stop(std::move(stop))
{
    const int32_t result = exchange(start);
    if (result == VX63_OK)
        return;
    bool stopped = false;
    const auto again = [&] {
        stopped = true;
        return m_stop();
    };
    const Failure failure = failureOf(result, "cannot start " + m_name, again);
    const bool heard = failure.code() != kExitNoMeter && failure.code() != kExitRestarting;
    if (!stopped && heard && (result == VX63_ERR_COMM || inSteps))
        exchange(again);
    throw failure;
}

Running::~Running()
{
    if (m_running && exchange(m_stop) != VX63_OK)
        complain("cannot stop " + m_name + ": the meter may go on measuring: look at 'vx63 status'");
}

void Running::stop()
{
    m_running = false;
    require("cannot stop " + m_name, m_stop);
}

} // namespace tool

// The constellation points of a single measurement that runs and has lock, as they come.
#pragma once

#include "common/running.h"
#include "libvx63.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace tool {

class PointCollection {
public:
    // Starts it. Throws Failure.
    //   points  1000, 2000 or 4000; behind the last of them the next ones come
    PointCollection(uint8_t ucDispType, uint16_t points);

    // The next points, `most` at most: none without lock. They hold until the next read. Throws Failure.
    std::span<const ConstaPoint> read(size_t most);

    // What the measurement delivered with the last points.
    const SingleMeasResult& result() const { return *m_result; }

    // Throws Failure.
    void stop() { m_running.stop(); }

    // It is not stopped: a start of the measurement ends it.
    void leave() { m_running.leave(); }

private:
    Running m_running;
    std::unique_ptr<SingleMeasResult> m_result;
};

} // namespace tool

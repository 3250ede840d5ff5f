// --check: a verdict that is not good ends the command with an exit code of its own.
#pragma once

#include "measure/reading.h"

#include <cstddef>
#include <string>

namespace tool {

class VerdictCheck {
public:
    void add(const Reading& reading);

    // Throws Failure where a verdict is fail or marginal, and where there is none at all.
    void conclude() const;

private:
    size_t m_count = 0;
    size_t m_judged = 0;
    size_t m_failed = 0;
    size_t m_marginal = 0;
    std::string m_worst; // the first of the worst: "27: fail: level"
};

} // namespace tool

// What the meter has been told to start and is told to stop again, however the command ends.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace tool {

class Running {
public:
    using Call = std::function<int32_t()>;

    // Starts it. Throws Failure; a start whose answer is no good may have arrived all the same and is
    // stopped.
    //   name         as in "cannot start NAME"
    //   inSteps      a start that is refused can have left something behind, and is stopped as well
    Running(std::string name, const Call& start, Call stop, bool inSteps = false);

    // Stops it unless it has been; complains when that fails.
    ~Running();

    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    // Throws Failure.
    void stop();

    // It is not stopped: another start takes its place.
    void leave() { m_running = false; }

private:
    std::string m_name;
    Call m_stop;
    bool m_running = true;
};

} // namespace tool

// The file of vx63 live --record: a line a reading, whole or not at all.
#pragma once

#include "live/state.h"

#include <cstdint>
#include <string>

namespace tool {

class Recorder {
public:
    // Opens it, to go on behind what is there; .csv: with the keys in the first line. Throws Failure.
    explicit Recorder(const std::string& path);
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    // Throws Failure; then it is over.
    void add(const LiveReading& reading);

    uint64_t count() const { return m_count; }

private:
    void append(const std::string& text);

    std::string m_path;
    bool m_csv;
    int m_fd;
    uint64_t m_count = 0;
};

} // namespace tool

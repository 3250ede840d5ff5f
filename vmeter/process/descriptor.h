// File descriptors that close themselves.
#pragma once

#include "failure.h"

#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace vmeter {

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            close(m_number);
    }

    int get() const { return m_number; }
    explicit operator bool() const { return m_number >= 0; }

    // Hands it to a program that this process becomes.
    void inherit() const { fcntl(m_number, F_SETFD, 0); }

private:
    int m_number = -1;
};

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;
};

// Closed in other programs. Throws Failure.
inline Pipe makePipe()
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw Failure("pipe", errorText(errno), "close other programs");
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

// Gives whether it was written.
inline bool writeByte(int descriptor, uint8_t byte)
{
    ssize_t written;
    while ((written = write(descriptor, &byte, 1)) < 0 && errno == EINTR) {
    }
    return written == 1;
}

// Reads until so many bytes are there or the end; gives how many.
inline std::size_t readFully(int descriptor, void* bytes, std::size_t count)
{
    std::size_t got = 0;
    while (got < count) {
        const ssize_t more = read(descriptor, static_cast<uint8_t*>(bytes) + got, count - got);
        if (more == 0 || (more < 0 && errno != EINTR))
            break;
        got += more > 0 ? static_cast<std::size_t>(more) : 0;
    }
    return got;
}

} // namespace vmeter

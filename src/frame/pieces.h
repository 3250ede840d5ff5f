// A log line of any length in pieces, to be written at once.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <sys/uio.h>

namespace vx63 {

// Texts stay where they lie; numbers are printed here. Takes the conversions that log statements use: d, f,
// p, s, u and X, with their flags, widths, precisions and lengths. What goes beyond its room is left out.
class Pieces {
public:
    [[gnu::format(printf, 2, 3)]] void add(const char* format, ...);
    [[gnu::format(printf, 2, 0)]] void addList(const char* format, va_list arguments);

    const iovec* pieces() const { return m_pieces; }
    int count() const { return m_count; }

private:
    void addText(const char* text, size_t length);
    template <class Number>
    void addNumber(const char* conversion, Number number);

    iovec m_pieces[44];
    int m_count = 0;
    char m_numbers[704]; // 14 of the largest floats
    size_t m_used = 0;
};

} // namespace vx63

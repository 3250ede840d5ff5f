#include "frame/line.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <unistd.h>

namespace vx63 {
namespace {

int readNumber(const char*& at)
{
    int number = 0;
    for (; '0' <= *at && *at <= '9'; ++at) {
        number = number * 10 + (*at - '0');
    }
    return number;
}

// A division gives two digits.
struct Pairs {
    char digits[100][2];
    consteval Pairs() : digits{}
    {
        for (int i = 0; i < 100; ++i) {
            digits[i][0] = static_cast<char>('0' + i / 10);
            digits[i][1] = static_cast<char>('0' + i % 10);
        }
    }
};
constexpr Pairs kPairs;

int digitsOf(uint32_t value)
{
    int count = 1;
    for (; value >= 10000; value /= 10000) {
        count += 4;
    }
    return count + (value >= 10) + (value >= 100) + (value >= 1000);
}

char* putDecimal(char* at, uint64_t value, int width)
{
    if (value < 10 && width <= 1) { // as most are
        *at = static_cast<char>('0' + value);
        return at + 1;
    }
    constexpr uint32_t kBillion = 1'000'000'000;
    if (value > UINT32_MAX) { // a 32-bit processor divides the others by itself
        at = putDecimal(at, value / kBillion, width - 9);
        value %= kBillion;
        width = 9;
    }
    auto rest = static_cast<uint32_t>(value);
    char* const end = at + std::max(digitsOf(rest), width);
    char* digit = end;
    for (; rest >= 10; rest /= 100) {
        digit -= 2;
        memcpy(digit, kPairs.digits[rest % 100], 2);
    }
    if (rest != 0) {
        *--digit = static_cast<char>('0' + rest);
    }
    while (digit != at) {
        *--digit = '0';
    }
    return end;
}

} // namespace

char* putHex(char* at, uintptr_t value, int width, const char* digits)
{
    int count = 1;
    for (uintptr_t rest = value >> 4; rest != 0; rest >>= 4) {
        ++count;
    }
    for (int i = std::max(count, width); i > 0; --i) {
        *at++ = i > count ? '0' : digits[value >> (4 * (i - 1)) & 0xF];
    }
    return at;
}

void Line::addPiece(const char* text, size_t length)
{
    if (length != 0 && m_count < static_cast<int>(std::size(m_pieces))) {
        m_pieces[m_count++] = {const_cast<char*>(text), length};
    }
}

void Line::endPiece()
{
    addPiece(m_start, static_cast<size_t>(m_end - m_start));
    m_start = m_end;
}

void Line::addText(const char* text, size_t length)
{
    if (length > kShort || length > room()) {
        endPiece();
        addPiece(text, length);
    } else {
        memcpy(m_end, text, length);
        m_end += length;
    }
}

void Line::addInteger(uint64_t magnitude, int width)
{
    if (room() >= kNumber) {
        m_end = putDecimal(m_end, magnitude, std::min<int>(width, kNumber));
    }
}

void Line::addHex(uintptr_t value, int width, const char* digits)
{
    if (room() >= kNumber) {
        m_end = putHex(m_end, value, std::min<int>(width, kNumber), digits);
    }
}

void Line::addFloat(double value)
{
    const int length = snprintf(m_end, room(), "%f", value);
    if (static_cast<size_t>(length) < room()) {
        m_end += length;
    }
}

// What every line begins with, and so by hand. There is room for it.
void Line::addHead(const timespec& now, const char* program, const char* function, int line)
{
    addInteger(static_cast<uint64_t>(now.tv_sec), 1);
    addLiteral(".");
    addInteger(static_cast<uint64_t>(now.tv_nsec / 1000), 6);
    addLiteral(" : ");
    addText(program, strlen(program));
    addLiteral(" : libvx63.cpp(");
    addInteger(static_cast<uint64_t>(line), 1);
    addLiteral(") ");
    addText(function, strlen(function));
    addLiteral("() : ");
}

void Line::addMessage(const char* format, va_list arguments)
{
    for (;; ++format) {
        char* end = m_end;
        for (; *format != '%' && *format != '\0' && end != m_text + kRoom; ++format) {
            *end++ = *format;
        }
        m_end = end;
        if (*format != '%') {
            return;
        }
        ++format;
        int width = 0;
        size_t precision = SIZE_MAX;
        if (*format < 'A') { // most have none of these
            width = readNumber(format);
            if (*format == '.') {
                ++format;
                const bool given = *format == '*';
                format += given;
                precision = static_cast<size_t>(given ? va_arg(arguments, int) : readNumber(format));
            }
        }
        const bool isShort = *format == 'h';
        format += isShort;
        int longs = 0;
        for (; *format == 'l'; ++format) {
            ++longs;
        }

        switch (*format) {
        case 'd': {
            const long long value = longs == 0   ? va_arg(arguments, int)
                                    : longs == 1 ? va_arg(arguments, long)
                                                 : va_arg(arguments, long long);
            const auto bits = static_cast<uint64_t>(value);
            if (value < 0) {
                addText("-", 1);
            }
            addInteger(value < 0 ? 0 - bits : bits, width);
            break;
        }
        case 'u':
            addInteger(va_arg(arguments, unsigned), width);
            break;
        case 'X': {
            const unsigned value = va_arg(arguments, unsigned);
            addHex(isShort ? static_cast<uint16_t>(value) : value, width, kUpperDigits);
            break;
        }
        case 'p': {
            const auto value = reinterpret_cast<uintptr_t>(va_arg(arguments, void*));
            if (value == 0) {
                addText("(nil)", 5);
            } else {
                addText("0x", 2);
                addHex(value, 1, "0123456789abcdef");
            }
            break;
        }
        case 's': {
            const char* const given = va_arg(arguments, const char*);
            const char* const text = given != nullptr ? given : "(null)";
            addText(text, strnlen(text, precision));
            break;
        }
        case 'f':
            addFloat(va_arg(arguments, double));
            break;
        }
    }
}

void Line::writeTo(int fd)
{
    *m_end++ = '\n';
    endPiece();
    [[maybe_unused]] const ssize_t written =
        m_count == 1 ? write(fd, m_pieces[0].iov_base, m_pieces[0].iov_len) : writev(fd, m_pieces, m_count);
}

} // namespace vx63

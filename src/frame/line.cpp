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

void Line::copy(const char* text, size_t length)
{
    if (length <= room()) {
        memcpy(m_end, text, length);
        m_end += length;
    }
}

void Line::addText(const char* text, size_t length)
{
    if (length > kShort || length > room()) {
        endPiece();
        addPiece(text, length);
    } else {
        copy(text, length);
    }
}

void Line::addInteger(uint64_t magnitude, bool negative, int width)
{
    char text[24];
    char* const end = std::end(text);
    char* at = end;
    for (; magnitude > UINT32_MAX; magnitude /= 10) {
        *--at = static_cast<char>('0' + magnitude % 10);
    }
    // What is left, which is nearly always all, a 32-bit processor divides by itself.
    for (auto rest = static_cast<uint32_t>(magnitude); rest != 0; rest /= 10) {
        *--at = static_cast<char>('0' + rest % 10);
    }
    const ptrdiff_t digits = std::clamp(width, 1, 20);
    while (end - at < digits) {
        *--at = '0';
    }
    if (negative) {
        *--at = '-';
    }
    copy(at, static_cast<size_t>(end - at));
}

void Line::addHex(uintptr_t value, int width, const char* digits)
{
    char text[2 * sizeof value];
    char* const end = putHex(text, value, std::min<int>(width, sizeof text), digits);
    copy(text, static_cast<size_t>(end - text));
}

void Line::addFloat(double value)
{
    const int length = snprintf(m_end, room(), "%f", value);
    if (0 <= length && static_cast<size_t>(length) < room()) {
        m_end += length;
    }
}

void Line::add(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    addList(format, arguments);
    va_end(arguments);
}

void Line::addList(const char* format, va_list arguments)
{
    for (;; ++format) {
        for (const char* const full = m_text + kRoom; *format != '%'; ++format) {
            if (*format == '\0' || m_end == full) {
                return;
            }
            *m_end++ = *format;
        }
        ++format;
        const int width = readNumber(format);
        size_t precision = SIZE_MAX;
        if (*format == '.') {
            ++format;
            const bool given = *format == '*';
            format += given;
            precision = static_cast<size_t>(given ? va_arg(arguments, int) : readNumber(format));
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
            addInteger(value < 0 ? 0 - bits : bits, value < 0, width);
            break;
        }
        case 'u':
            addInteger(va_arg(arguments, unsigned), false, width);
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
        default:
            return;
        }
    }
}

void Line::writeTo(int fd)
{
    endPiece();
    [[maybe_unused]] const ssize_t written =
        m_count == 1 ? write(fd, m_pieces[0].iov_base, m_pieces[0].iov_len) : writev(fd, m_pieces, m_count);
}

} // namespace vx63

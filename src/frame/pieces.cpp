#include "frame/pieces.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace vx63 {

void Pieces::addText(const char* text, size_t length)
{
    if (length != 0 && m_count < static_cast<int>(std::size(m_pieces))) {
        m_pieces[m_count++] = {const_cast<char*>(text), length};
    }
}

template <class Number>
void Pieces::addNumber(const char* conversion, Number number)
{
    char* const text = m_numbers + m_used;
    const size_t room = sizeof m_numbers - m_used;
    const int length = snprintf(text, room, conversion, number);
    if (0 <= length && static_cast<size_t>(length) < room) {
        addText(text, static_cast<size_t>(length));
        m_used += static_cast<size_t>(length);
    }
}

void Pieces::add(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    addList(format, arguments);
    va_end(arguments);
}

void Pieces::addList(const char* format, va_list arguments)
{
    for (;;) {
        const size_t literal = strcspn(format, "%");
        addText(format, literal);
        format += literal;
        if (*format == '\0') {
            return;
        }
        char conversion[16] = {}; // with its percent sign and letter
        const size_t length = strcspn(format, "dfpsuX") + 1;
        if (length >= sizeof conversion) {
            return;
        }
        memcpy(conversion, format, length);
        format += length;

        const char kind = conversion[length - 1];
        if (kind == 's') {
            size_t limit = SIZE_MAX;
            if (const char* const precision = strchr(conversion, '.'); precision != nullptr) {
                limit = precision[1] == '*' ? static_cast<size_t>(va_arg(arguments, int))
                                            : strtoul(precision + 1, nullptr, 10);
            }
            const char* const text = va_arg(arguments, const char*);
            addText(text, strnlen(text, limit));
        } else if (kind == 'p') {
            addNumber(conversion, va_arg(arguments, void*));
        } else if (kind == 'f') {
            addNumber(conversion, va_arg(arguments, double));
        } else if (strstr(conversion, "ll") != nullptr) {
            addNumber(conversion, va_arg(arguments, long long));
        } else if (strchr(conversion, 'l') != nullptr) {
            addNumber(conversion, va_arg(arguments, long));
        } else {
            addNumber(conversion, va_arg(arguments, int));
        }
    }
}

} // namespace vx63

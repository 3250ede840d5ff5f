// A log line of any length, composed without the heap and written at once.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <sys/uio.h>

namespace vx63 {

inline constexpr char kUpperDigits[] = "0123456789ABCDEF";

// Writes the value in hexadecimal digits, at least `width` of them; gives the place behind.
char* putHex(char* at, uintptr_t value, int width, const char* digits = kUpperDigits);

// A long text stays where it lies; what goes beyond the room is left out.
class Line {
public:
    void addHead(const timespec& now, const char* program, const char* function, int line);

    // Takes the conversions that log statements use, and no others: d, u and X, filled with zeros where they
    // have a width; s, with a precision or without; p; f.
    [[gnu::format(printf, 2, 0)]] void addMessage(const char* format, va_list arguments);

    // Ends the line. One system call, so that no other line comes between; what a full disk cuts off is lost.
    void writeTo(int fd);

private:
    // For the literals and numbers of any statement (14 of the largest floats take 680 bytes) and short
    // texts.
    static constexpr size_t kRoom = 1152;
    static constexpr size_t kShort = 200;
    static constexpr size_t kNumber = 20; // any number's digits

    size_t room() const { return static_cast<size_t>(m_text + kRoom - m_end); }
    void addText(const char* text, size_t length);
    template <size_t Size>
    void addLiteral(const char (&literal)[Size])
    {
        memcpy(m_end, literal, Size - 1);
        m_end += Size - 1;
    }
    void addInteger(uint64_t magnitude, int width);
    void addHex(uintptr_t value, int width, const char* digits);
    void addFloat(double value);
    void addPiece(const char* text, size_t length);
    void endPiece();

    char* m_end = m_text;   // behind what is composed
    char* m_start = m_text; // of what is not yet in a piece
    int m_count = 0;
    iovec m_pieces[12];     // for five long texts: the head has two
    char m_text[kRoom + 1]; // and the end of the line
};

} // namespace vx63

// How the campaign ends where something does not hold.
#pragma once

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace responses {

inline const char* s_calling = "nothing"; // the operation that is called

[[noreturn, gnu::format(printf, 1, 2)]] inline void finding(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    fprintf(stderr, "responses: %s: ", s_calling);
    vfprintf(stderr, format, arguments);
    fprintf(stderr, "\n");
    va_end(arguments);
    abort();
}

} // namespace responses

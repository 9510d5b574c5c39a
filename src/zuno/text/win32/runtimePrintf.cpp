#include "text/runtimePrintf.h"

#include <cstdarg>
#include <cstdio>

namespace zuno {

// MinGW's own C99 implementation instead of msvcrt's, whose exponents have three digits.
int runtimePrintf(char* buffer, size_t size, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = __mingw_vsnprintf(buffer, size, format, arguments);
    va_end(arguments);
    return length;
}

} // namespace zuno

#include "text/runtimePrintf.h"

#include <cstdarg>
#include <cstdio>

namespace zuno {

int runtimePrintf(char* buffer, size_t size, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer, size, format, arguments);
    va_end(arguments);
    return length;
}

} // namespace zuno

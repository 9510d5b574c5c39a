#pragma once

#include <cstddef>

namespace zuno {

// snprintf of the C runtime library, with C99 output on every platform: exponents have
// at least two digits ("1e+08", as glibc prints them, where the Microsoft runtime would
// print "1e+008"). Returns the length of the complete output, or a negative value.
int runtimePrintf(char* buffer, size_t size, const char* format, ...);

} // namespace zuno

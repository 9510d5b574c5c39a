#pragma once

#include <zuno/String.h>

#include <cstdint>

namespace zuno {

// The operating system's text for an error code (FormatMessageW on Windows, strerror_r on
// POSIX), without trailing line breaks; a generic text for unknown codes.
String getSystemErrorText(uint32_t code);

// The calling thread's last error code (GetLastError on Windows, errno on POSIX).
uint32_t getLastSystemError();

} // namespace zuno

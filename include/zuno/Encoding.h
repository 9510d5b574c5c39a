#pragma once

#include <cstdint>

namespace zuno {

// Storage encodings of text objects.
enum class Encoding : int32_t {
    Wide,      // wchar_t: UTF-16 code units on Windows, UTF-32 on POSIX
    CodePage,  // the process's narrow code page (ANSI on Windows, the locale's on POSIX)
    UTF8,
    UTF16,     // char16_t code units in the machine's byte order
    UTF32,     // char32_t code units in the machine's byte order
    Latin1,
};

} // namespace zuno

#pragma once

#include <zuno/String.h>

#include <cstdio>

namespace mailer {

// Makes the code page the one the command line and the mail client use: the ANSI code
// page on Windows; on POSIX the user's locale, or UTF-8 when that is the plain C locale.
void prepareLocale();

// Opens the file for reading in binary mode; null when it cannot be opened.
std::FILE* openForReading(const zuno::String& path);

} // namespace mailer

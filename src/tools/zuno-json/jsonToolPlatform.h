#pragma once

#include <zuno/String.h>

#include <cstdio>

namespace jsontool {

// Sets the locale the command line is written in and makes standard input and output
// binary, so that the text passes unchanged (no CR LF translation on Windows).
void prepareProcess();

// Opens the file for reading in binary mode; null when it cannot be opened.
std::FILE* openForReading(const zuno::String& path);

} // namespace jsontool

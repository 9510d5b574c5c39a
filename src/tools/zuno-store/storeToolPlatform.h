#pragma once

#include <zuno/String.h>

#include <vector>

namespace storetool {

// Sets the locale the command line is written in and makes standard output binary, so
// that UTF-8 text passes unchanged (no CR LF translation on Windows).
void prepareProcess();

// The command-line arguments after the program's name, as the user typed them (on
// Windows from the wide command line, so any character passes).
std::vector<zuno::String> arguments(int argc, char** argv);

} // namespace storetool

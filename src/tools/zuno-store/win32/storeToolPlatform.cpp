#include "../storeToolPlatform.h"
#include "core/win32/windows.h"

#include <clocale>
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

namespace storetool {

void prepareProcess() {
    std::setlocale(LC_ALL, "");
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

std::vector<zuno::String> arguments(int, char**) {
    std::vector<zuno::String> result;
    int count = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!wide) return result;
    for (int i = 1; i < count; ++i) result.emplace_back(wide[i], -1);
    LocalFree(wide);
    return result;
}

} // namespace storetool

#include "../storeToolPlatform.h"

#include <clocale>
#include <cstring>

namespace storetool {

void prepareProcess() {
    const char* locale = std::setlocale(LC_ALL, "");
    if (!locale || std::strcmp(locale, "C") == 0 || std::strcmp(locale, "POSIX") == 0) {
        std::setlocale(LC_ALL, "C.UTF-8");
    }
}

// Arguments are in the locale's encoding, the framework's code page.
std::vector<zuno::String> arguments(int argc, char** argv) {
    std::vector<zuno::String> result;
    for (int i = 1; i < argc; ++i) result.emplace_back(argv[i], -1);
    return result;
}

} // namespace storetool

#include "../jsonToolPlatform.h"

#include <clocale>
#include <cstring>

namespace jsontool {

void prepareProcess() {
    const char* locale = std::setlocale(LC_ALL, "");
    if (!locale || std::strcmp(locale, "C") == 0 || std::strcmp(locale, "POSIX") == 0) {
        std::setlocale(LC_ALL, "C.UTF-8");
    }
}

std::FILE* openForReading(const zuno::String& path) {
    return std::fopen(path.toCP().c_str(), "rb");
}

} // namespace jsontool

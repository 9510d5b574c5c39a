#include "../jsonToolPlatform.h"

#include <clocale>
#include <cstdio>
#include <fcntl.h>
#include <io.h>

namespace jsontool {

void prepareProcess() {
    std::setlocale(LC_ALL, "");
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
}

std::FILE* openForReading(const zuno::String& path) {
    std::FILE* file = nullptr;
    if (_wfopen_s(&file, path.toWide().wc_str(), L"rb") != 0) return nullptr;
    return file;
}

} // namespace jsontool

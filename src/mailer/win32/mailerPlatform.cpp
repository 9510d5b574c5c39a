#include "mailerPlatform.h"

#include <clocale>
#include <cstdio>

namespace mailer {

void prepareLocale() {
    std::setlocale(LC_ALL, "");
}

std::FILE* openForReading(const zuno::String& path) {
    std::FILE* file = nullptr;
    if (_wfopen_s(&file, path.toWide().wc_str(), L"rb") != 0) return nullptr;
    return file;
}

} // namespace mailer

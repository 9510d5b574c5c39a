#include "mailerPlatform.h"

#include <clocale>
#include <cstring>
#include <langinfo.h>
#include <sys/stat.h>

namespace mailer {

void prepareLocale() {
    std::setlocale(LC_ALL, "");
    // Under the plain C locale (no LANG, as for many services) non-ASCII paths and texts
    // would be lost; modern tools read such a locale as UTF-8.
    if (std::strcmp(nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0) std::setlocale(LC_CTYPE, "C.UTF-8");
}

std::FILE* openForReading(const zuno::String& path) {
    // The path arrived in the locale's encoding; converting back gives the same bytes.
    std::FILE* file = std::fopen(path.toCP().c_str(), "rb");
    struct stat info {};
    if (file && (fstat(fileno(file), &info) != 0 || S_ISDIR(info.st_mode))) {
        // A folder opens on POSIX but cannot be read, as on Windows, where it does not open.
        std::fclose(file);
        return nullptr;
    }
    return file;
}

} // namespace mailer

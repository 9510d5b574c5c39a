#include "mailerPlatform.h"

#include <clocale>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mailer {

void prepareLocale() {
    std::setlocale(LC_ALL, "");
    // Under the plain C locale (no LANG, as for many services) non-ASCII paths and texts
    // would be lost; modern tools read such a locale as UTF-8.
    if (std::strcmp(nl_langinfo(CODESET), "ANSI_X3.4-1968") == 0) std::setlocale(LC_CTYPE, "C.UTF-8");
}

// Only a regular file is a mailer file. Opening without blocking keeps a named pipe from
// stalling the tool, and the type is judged on the opened descriptor itself, so what is
// checked is what is read: a device such as /dev/zero, a pipe, a socket or a folder (which
// opens on POSIX but not on Windows) is refused before a byte is read.
std::FILE* openForReading(const zuno::String& path) {
    // The path arrived in the locale's encoding; converting back gives the same bytes.
    const int fd = open(path.toCP().c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) return nullptr;
    struct stat info {};
    std::FILE* file = fstat(fd, &info) == 0 && S_ISREG(info.st_mode) ? fdopen(fd, "rb") : nullptr;
    if (!file) close(fd);
    return file;
}

} // namespace mailer

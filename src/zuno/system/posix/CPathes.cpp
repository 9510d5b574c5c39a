#include <zuno/CError.h>
#include <zuno/CPathes.h>
#include <zuno/CURI.h>
#include <zuno/CURIError.h>
#include <zuno/IStringLocalizer.h>
#include "text/percentEncoding.h"
#include <zuno/systemError.h>

#include <cerrno>
#include <cstdlib>
#include <unistd.h>

namespace zuno {

namespace {

[[noreturn]] void throwInvalidPath(const String& path, int error) {
    const String text = fillPlaceholder(
        localizeText(L"zuno.CPathes.InvalidPath", L"The path '%PATH%' is not valid (%MSG%)."), L"PATH", path);
    throw CError(fillPlaceholder(text, L"MSG", getSystemErrorText(uint32_t(error))));
}

String currentFolder(const String& pathForErrors) {
    char* folder = getcwd(nullptr, 0);
    if (!folder) throwInvalidPath(pathForErrors, errno);
    const String text(folder, -1);
    std::free(folder);
    return text;
}

// A relative path is taken against the current directory.
String absolutePath(const String& path) {
    if (path.isEmpty()) throwInvalidPath(path, ENOENT);
    if (path.startsWith(L"/")) return path;
    return currentFolder(path) + L"/" + path;
}

std::string bytesOf(const String& narrow) {
    return std::string(narrow.c_str(), size_t(narrow->getByteLength()));
}

bool isLocalHost(const String& host) {
    return host.isEmpty() || host.equalsNoCase(L"localhost");
}

} // namespace

// "?" is allowed in query texts but would start the URI's query here, and it is a common
// character in POSIX file names.
P<IURI> CPathes::pathToURI(const String& path) {
    const String escaped = CURI::escape(absolutePath(path), CURI::QueryFragmentAllowed).replace(L"?", L"%3F");
    return make<CURI>(String(L"file://") + escaped);
}

// Escapes in a file URI stand for bytes of the file name in the locale's encoding (file
// managers write "%C3%A4" for a UTF-8 "ä"), so they are decoded as bytes, not characters.
String CPathes::uriToPath(const P<IURI>& uri, bool asFolder) {
    if (!uri || !uri->isScheme(L"file") || !isLocalHost(uri->getHost())) throw CURITypeNotSupportedError(uri);
    std::string path = percentDecode(bytesOf(uri->getPath().toCP()));
    // An escaped NUL would silently cut the path short in every system call.
    if (path.find('\0') != std::string::npos) throw CURIFormatError(uri->toString());
    if (asFolder && (path.empty() || path.back() != '/')) path += '/';
    return String(path.data(), int32_t(path.size())).toWide();
}

} // namespace zuno

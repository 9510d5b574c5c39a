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

String fromBytes(const std::string& bytes) {
    return String(bytes.data(), int32_t(bytes.size())).toWide();
}

// The path with its folder part resolved by the file system (symbolic links, "." and
// ".."), as the kernel walks it when the file is opened; the last name is kept, so a link
// given as the file itself stays that link, as rm would remove it. A folder that cannot be
// resolved (it does not exist) leaves the path as it is.
String resolvedPath(const String& absolute) {
    const std::string path = bytesOf(absolute.toCP());
    const size_t slash = path.rfind('/');
    const std::string name = path.substr(slash + 1);
    const bool nameIsFolder = name.empty() || name == "." || name == "..";
    const std::string folder = nameIsFolder ? path : slash == 0 ? "/" : path.substr(0, slash);
    char* real = realpath(folder.c_str(), nullptr);
    if (!real) return absolute;
    std::string resolved = real;
    std::free(real);
    if (!nameIsFolder) resolved += (resolved == "/" ? "" : "/") + name;
    return fromBytes(resolved);
}

bool isLocalHost(const String& host) {
    return host.isEmpty() || host.equalsNoCase(L"localhost");
}

} // namespace

// "?" is allowed in query texts but would start the URI's query here, and it is a common
// character in POSIX file names.
P<IURI> CPathes::pathToURI(const String& path) {
    const String escaped =
        CURI::escape(resolvedPath(absolutePath(path)), CURI::QueryFragmentAllowed).replace(L"?", L"%3F");
    return make<CURI>(String(L"file://") + escaped);
}

// Escapes in a file URI stand for bytes of the file name in the locale's encoding (file
// managers write "%C3%A4" for a UTF-8 "ä"), so they are decoded as bytes, not characters.
String CPathes::uriToPath(const P<IURI>& uri, bool asFolder) {
    if (!uri || !uri->isScheme(L"file") || !isLocalHost(uri->getHost())) throw CURITypeNotSupportedError(uri);
    std::string path = percentDecode(bytesOf(uri->getPath().toCP()));
    // An escaped NUL would silently cut the path short in every system call.
    if (path.find('\0') != std::string::npos) throw CURIFormatError(uri->toString());
    // "file:att.txt" names a file relative to the current directory.
    if (!path.empty() && path[0] != '/') path = bytesOf(currentFolder(fromBytes(path)).toCP()) + "/" + path;
    if (asFolder && (path.empty() || path.back() != '/')) path += '/';
    return fromBytes(path);
}

} // namespace zuno

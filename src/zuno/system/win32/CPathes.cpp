#include <zuno/CPathes.h>
#include <zuno/CURI.h>
#include <zuno/CURIError.h>
#include <zuno/IStringLocalizer.h>
#include <zuno/systemError.h>
#include "core/win32/windows.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace zuno {

namespace {

constexpr std::wstring_view LongUNCPrefix = L"\\\\?\\UNC\\";
constexpr std::wstring_view LongPathPrefix = L"\\\\?\\";

bool startsWith(const std::wstring& text, std::wstring_view prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

[[noreturn]] void throwInvalidPath(const String& path, DWORD error) {
    const String text = fillPlaceholder(
        localizeText(L"zuno.CPathes.InvalidPath", L"The path '%PATH%' is not valid (%MSG%)."), L"PATH", path);
    throw CError(fillPlaceholder(text, L"MSG", getSystemErrorText(error)));
}

// The absolute form of a path, relative ones taken against the current directory, with
// "." and ".." resolved and slashes turned into backslashes.
std::wstring absolutePath(const String& path) {
    const std::wstring given = path.toStdWString();
    if (given.empty()) throwInvalidPath(path, ERROR_INVALID_NAME);
    std::wstring full(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetFullPathNameW(given.c_str(), DWORD(full.size()), full.data(), nullptr);
        if (length == 0) throwInvalidPath(path, GetLastError());
        const bool fits = length < full.size();
        full.resize(length);
        if (fits) return full;
    }
}

// "\\?\C:\dir" and "\\?\UNC\host\share" name the same files as "C:\dir" and "\\host\share".
std::wstring withoutLongPathPrefix(const std::wstring& path) {
    if (startsWith(path, LongUNCPrefix)) return L"\\\\" + path.substr(LongUNCPrefix.size());
    if (startsWith(path, LongPathPrefix)) return path.substr(LongPathPrefix.size());
    return path;
}

std::wstring escaped(const std::wstring& text, const wchar_t* allowed) {
    return CURI::escape(String::fromWide(text), allowed).toStdWString();
}

bool isDriveLetter(wchar_t c) {
    return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
}

// "/C:/dir" is the URI path of the drive path "C:/dir".
std::wstring withoutSlashBeforeDrive(const std::wstring& path) {
    if (path.size() >= 3 && path[0] == L'/' && isDriveLetter(path[1]) && path[2] == L':') return path.substr(1);
    return path;
}

// "C:\dir" and "\\host\share" are full paths; "att.txt", "dir\att.txt" and "\dir" are
// taken against the current directory and drive.
bool isFullPath(const std::wstring& path) {
    const bool drivePath = path.size() >= 3 && isDriveLetter(path[0]) && path[1] == L':' && path[2] == L'\\';
    return drivePath || startsWith(path, L"\\\\");
}

bool isLocalHost(const std::wstring& host) {
    return host.empty() || String::fromWide(host).equalsNoCase(L"localhost");
}

} // namespace

P<IURI> CPathes::pathToURI(const String& path) {
    std::wstring full = withoutLongPathPrefix(absolutePath(path));
    std::replace(full.begin(), full.end(), L'\\', L'/');
    std::wstring text;
    if (startsWith(full, L"//")) {
        // UNC: //host/share/path. The host is escaped fully, so "host@SSL" stays a host.
        const size_t shareStart = std::min(full.find(L'/', 2), full.size());
        text = L"file://" + escaped(full.substr(2, shareStart - 2), L"")
               + escaped(full.substr(shareStart), CURI::QueryFragmentAllowed);
    } else {
        text = L"file:///" + escaped(full, CURI::QueryFragmentAllowed);
    }
    return make<CURI>(String::fromWide(text));
}

String CPathes::uriToPath(const P<IURI>& uri, bool asFolder) {
    if (!uri || !uri->isScheme(L"file")) throw CURITypeNotSupportedError(uri);
    const std::wstring host = CURI::unescape(uri->getHost()).toStdWString();
    const std::wstring path = uri->getDecodedPath().toStdWString();
    // CURI keeps "%00" as text, but a NUL from any other URI would silently cut the path
    // short in every system call and so name another file.
    if (host.find(L'\0') != std::wstring::npos || path.find(L'\0') != std::wstring::npos)
        throw CURIFormatError(uri->toString());

    std::wstring local = isLocalHost(host) ? withoutSlashBeforeDrive(path) : L"//" + host + path;
    std::replace(local.begin(), local.end(), L'/', L'\\');
    if (!local.empty() && !isFullPath(local)) local = absolutePath(String::fromWide(local));
    if (asFolder && (local.empty() || local.back() != L'\\')) local += L'\\';
    return String::fromWide(local);
}

} // namespace zuno

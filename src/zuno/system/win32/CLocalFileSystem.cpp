#include <zuno/CError.h>
#include <zuno/CLocalFileSystem.h>
#include <zuno/IPathes.h>
#include <zuno/IStringLocalizer.h>
#include <zuno/systemError.h>
#include "core/win32/windows.h"

#include <shellapi.h>

#include <string>

namespace zuno {

namespace {

constexpr FILEOP_FLAGS RecycleFlags = FOF_ALLOWUNDO | FOF_NOCONFIRMATION | FOF_SILENT | FOF_NOERRORUI;
static_assert(RecycleFlags == 0x454);

CError deleteError(const String& key, const String& defaultText, const P<IURI>& uri, const String& reason) {
    const String text = fillPlaceholder(localizeText(key, defaultText), L"FILE", uri->toString());
    return CError(fillPlaceholder(text, L"MSG", reason));
}

bool isAlreadyGone(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

// Clears a read-only mark so the delete can succeed; the original attributes come back
// when it fails anyway.
bool deletePermanently(const P<IURI>& uri, const String& path) {
    const String widePath = path.toWide();
    const wchar_t* const file = widePath.wc_str();
    const DWORD attributes = GetFileAttributesW(file);
    const bool known = attributes != INVALID_FILE_ATTRIBUTES;
    if (known && (attributes & FILE_ATTRIBUTE_READONLY)) {
        const DWORD writable = attributes & ~DWORD(FILE_ATTRIBUTE_READONLY);
        SetFileAttributesW(file, writable ? writable : FILE_ATTRIBUTE_NORMAL);
    }
    if (DeleteFileW(file)) return true;

    const DWORD error = GetLastError();
    if (known) SetFileAttributesW(file, attributes);
    if (isAlreadyGone(error)) return false;
    throw deleteError(L"zuno.CFileSystem.DeleteFileFailed", L"Error deleting the file '%FILE%' (%MSG%).", uri,
                      getSystemErrorText(error));
}

bool moveToRecycleBin(const P<IURI>& uri, const String& path) {
    // The shell takes a list of paths, each ended by a NUL, the list by one more.
    std::wstring from = path.toStdWString();
    from.append(2, L'\0');
    SHFILEOPSTRUCTW operation{};
    operation.wFunc = FO_DELETE;
    operation.pFrom = from.c_str();
    operation.fFlags = RecycleFlags;
    const int result = SHFileOperationW(&operation);
    if (result == 0) return true;
    throw deleteError(L"zuno.CFileSystem.shellDeleteUndoable", L"Error deleting file '%FILE%' (%MSG%).", uri,
                      String::fromWide(L"shell error " + std::to_wstring(result)));
}

} // namespace

bool CLocalFileSystem::deleteFile(const P<IURI>& uri, bool toRecycleBin) {
    const String path = getPathes()->uriToPath(uri, false);
    return toRecycleBin ? moveToRecycleBin(uri, path) : deletePermanently(uri, path);
}

} // namespace zuno

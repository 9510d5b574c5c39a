#include <zuno/CError.h>
#include <zuno/CLocalFileSystem.h>
#include <zuno/IPathes.h>
#include <zuno/IStringLocalizer.h>
#include "system/posix/freedesktopTrash.h"
#include <zuno/systemError.h>

#include <cerrno>
#include <unistd.h>

namespace zuno {

namespace {

// unlink answers ENOTDIR too when a folder on the way is a file: the file is not there.
bool isGone(int error, bool toRecycleBin) {
    return error == ENOENT || (error == ENOTDIR && !toRecycleBin);
}

[[noreturn]] void throwDeleteError(const String& key, const String& defaultText, const P<IURI>& uri, int error) {
    const String text = fillPlaceholder(localizeText(key, defaultText), L"FILE", uri->toString());
    throw CError(fillPlaceholder(text, L"MSG", getSystemErrorText(uint32_t(error))));
}

std::string localPath(const P<IURI>& uri) {
    const String path = getPathes()->uriToPath(uri, false).toCP();
    return std::string(path.c_str(), size_t(path->getByteLength()));
}

} // namespace

// On POSIX the permissions of the folder decide whether a file can be removed, not the
// file's own, so a read-only file is simply unlinked.
bool CLocalFileSystem::deleteFile(const P<IURI>& uri, bool toRecycleBin) {
    const std::string path = localPath(uri);
    const int error = toRecycleBin ? posix::moveToTrash(path) : unlink(path.c_str()) == 0 ? 0 : errno;
    if (error == 0) return true;
    if (isGone(error, toRecycleBin)) return false;
    if (toRecycleBin)
        throwDeleteError(L"zuno.CFileSystem.shellDeleteUndoable", L"Error deleting file '%FILE%' (%MSG%).", uri, error);
    throwDeleteError(L"zuno.CFileSystem.DeleteFileFailed", L"Error deleting the file '%FILE%' (%MSG%).", uri, error);
}

} // namespace zuno

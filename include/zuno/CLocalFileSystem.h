#pragma once

#include <zuno/CObject.h>
#include <zuno/IFileSystem.h>

namespace zuno {

// The local disk. Platform code: win32/CLocalFileSystem.cpp (attributes, DeleteFileW,
// SHFileOperationW), posix/CLocalFileSystem.cpp (unlink, the freedesktop Trash).
class CLocalFileSystem : public CObject, public IFileSystem {
public:
    // Permanent delete clears a read-only mark first and restores it when the delete fails;
    // a file already gone answers false; other failures raise CError with the key
    // "zuno.CFileSystem.DeleteFileFailed" ("zuno.CFileSystem.shellDeleteUndoable" for the
    // recycle bin).
    bool deleteFile(const P<IURI>& uri, bool toRecycleBin) override;
};

} // namespace zuno

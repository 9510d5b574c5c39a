#pragma once

#include <zuno/IBase.h>
#include <zuno/IURI.h>
#include <zuno/P.h>

namespace zuno {

// A file system that serves some URI schemes.
class IFileSystem : public virtual IBase {
public:
    // Removes a file: permanently, or moved to the recycle bin (the freedesktop Trash on
    // POSIX). False when the file is already gone; other failures raise CError.
    virtual bool deleteFile(const P<IURI>& uri, bool toRecycleBin) = 0;
};

} // namespace zuno

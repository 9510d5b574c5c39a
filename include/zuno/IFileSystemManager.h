#pragma once

#include <zuno/IFileSystem.h>

namespace zuno {

// Finds the file system that serves a URI's scheme.
class IFileSystemManager : public virtual IBase {
public:
    // Raises CURITypeNotSupportedError when no file system serves the URI.
    virtual P<IFileSystem> getFileSystem(const P<IURI>& uri) = 0;
};

// The process-wide file-system manager service.
P<IFileSystemManager> getFileSystemManager();

} // namespace zuno

#pragma once

#include <zuno/CObject.h>
#include <zuno/IFileSystemManager.h>

namespace zuno {

// Dispatches URIs to file systems by scheme. It serves "file" with the local file system;
// every other scheme raises CURITypeNotSupportedError.
class CFileSystemManager : public CObject, public IFileSystemManager {
public:
    CFileSystemManager();

    P<IFileSystem> getFileSystem(const P<IURI>& uri) override;

private:
    P<IFileSystem> m_localFileSystem;
};

} // namespace zuno

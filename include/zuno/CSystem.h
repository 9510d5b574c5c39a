#pragma once

#include <zuno/CObject.h>
#include <zuno/IFileSystem.h>
#include <zuno/ISystem.h>

namespace zuno {

// The system service. Removal is portable (CSystem.cpp): "file" URIs go to the local file
// system it holds, others to the file-system manager. getOSName() is platform code
// (win32/CSystem.cpp, posix/CSystem.cpp).
class CSystem : public CObject, public ISystem {
public:
    CSystem();
    // For tests: a system over another local file system (null: none).
    explicit CSystem(P<IFileSystem> localFileSystem);

    String getOSName() override;
    bool deleteFile(const P<IURI>& uri) override;
    bool recycleFile(const P<IURI>& uri) override;

private:
    bool removeFile(const P<IURI>& uri, bool toRecycleBin);

    P<IFileSystem> m_localFileSystem;
};

} // namespace zuno

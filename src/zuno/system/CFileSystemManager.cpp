#include <zuno/CFileSystemManager.h>
#include <zuno/CGlobalObjFactory.h>
#include <zuno/CLocalFileSystem.h>
#include <zuno/CURIError.h>

namespace zuno {

CFileSystemManager::CFileSystemManager() : m_localFileSystem(make<CLocalFileSystem>()) {}

P<IFileSystem> CFileSystemManager::getFileSystem(const P<IURI>& uri) {
    if (uri && uri->isScheme(L"file")) return m_localFileSystem;
    throw CURITypeNotSupportedError(uri);
}

P<IFileSystemManager> getFileSystemManager() {
    static const CGlobalObjFactory::ServiceKey key;
    return CGlobalObjFactory::service<IFileSystemManager>(
        key, [] { return P<IFileSystemManager>(make<CFileSystemManager>()); });
}

} // namespace zuno

#include <zuno/CGlobalObjFactory.h>
#include <zuno/CLocalFileSystem.h>
#include <zuno/CSystem.h>
#include <zuno/IFileSystemManager.h>

namespace zuno {

CSystem::CSystem() : m_localFileSystem(make<CLocalFileSystem>()) {}

CSystem::CSystem(P<IFileSystem> localFileSystem) : m_localFileSystem(std::move(localFileSystem)) {}

bool CSystem::deleteFile(const P<IURI>& uri) {
    if (!uri || uri->toString().isEmpty()) return false;
    return removeFile(uri, false);
}

bool CSystem::recycleFile(const P<IURI>& uri) {
    return removeFile(uri, true);
}

// Local files go to the file system this service holds, everything else to the
// file-system manager, which raises for a scheme nobody serves (a null URI included).
bool CSystem::removeFile(const P<IURI>& uri, bool toRecycleBin) {
    if (uri && uri->isScheme(L"file")) {
        if (!m_localFileSystem) return false;
        return m_localFileSystem->deleteFile(uri, toRecycleBin);
    }
    return getFileSystemManager()->getFileSystem(uri)->deleteFile(uri, toRecycleBin);
}

P<ISystem> getSystem() {
    static const CGlobalObjFactory::ServiceKey key;
    return CGlobalObjFactory::service<ISystem>(key, [] { return P<ISystem>(make<CSystem>()); });
}

} // namespace zuno

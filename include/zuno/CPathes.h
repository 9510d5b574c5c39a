#pragma once

#include <zuno/CObject.h>
#include <zuno/IPathes.h>

namespace zuno {

// The path service. The two conversions are platform code (win32/CPathes.cpp,
// posix/CPathes.cpp); the service accessor getPathes() is portable (CPathes.cpp).
class CPathes : public CObject, public IPathes {
public:
    P<IURI> pathToURI(const String& path) override;
    String uriToPath(const P<IURI>& uri, bool asFolder) override;
};

} // namespace zuno

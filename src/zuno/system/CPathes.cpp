#include <zuno/CGlobalObjFactory.h>
#include <zuno/CPathes.h>

namespace zuno {

P<IPathes> getPathes() {
    static const CGlobalObjFactory::ServiceKey key;
    return CGlobalObjFactory::service<IPathes>(key, [] { return P<IPathes>(make<CPathes>()); });
}

} // namespace zuno

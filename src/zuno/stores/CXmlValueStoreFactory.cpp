#include "stores/CXmlValueStore.h"
#include "stores/CXmlValueStoreFactory.h"

namespace zuno {

bool CXmlValueStoreFactory::accepts(const P<IURI>& uri) {
    return uri && uri->isScheme(L"file") && uri->hasExtension(L".xml");
}

P<IValueStore> CXmlValueStoreFactory::createValueStore(const P<IURI>& uri, ValueStoreAccess access) {
    if (!accepts(uri)) return nullptr;
    return make<CXmlValueStore>(uri, access);
}

} // namespace zuno

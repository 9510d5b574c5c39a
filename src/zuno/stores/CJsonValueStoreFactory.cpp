#include "stores/CJsonValueStore.h"
#include "stores/CJsonValueStoreFactory.h"

namespace zuno {

bool CJsonValueStoreFactory::accepts(const P<IURI>& uri) {
    return uri && uri->isScheme(L"file") && uri->hasExtension(L".json");
}

P<IValueStore> CJsonValueStoreFactory::createValueStore(const P<IURI>& uri, ValueStoreAccess access) {
    if (!accepts(uri)) return nullptr;
    return make<CJsonValueStore>(uri, access);
}

} // namespace zuno

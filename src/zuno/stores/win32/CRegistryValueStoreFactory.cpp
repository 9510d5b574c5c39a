#include "stores/win32/CRegistryValueStore.h"
#include "stores/win32/CRegistryValueStoreFactory.h"

namespace zuno::win32 {

bool CRegistryValueStoreFactory::accepts(const P<IURI>& uri) {
    return uri && uri->isScheme(L"registry");
}

P<IValueStore> CRegistryValueStoreFactory::createValueStore(const P<IURI>& uri, ValueStoreAccess access) {
    if (!accepts(uri)) return nullptr;
    return make<CRegistryValueStore>(uri, access);
}

} // namespace zuno::win32

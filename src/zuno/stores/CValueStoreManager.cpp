#include "stores/CJsonValueStoreFactory.h"
#include "stores/CXmlValueStoreFactory.h"
#include "stores/platformFactories.h"

#include <zuno/CGlobalObjFactory.h>
#include <zuno/CValueStoreManager.h>

#include <algorithm>

namespace zuno {

CValueStoreManager::CValueStoreManager() {
    m_factories.push_back(make<CXmlValueStoreFactory>());
    m_factories.push_back(make<CJsonValueStoreFactory>());
    for (const P<IValueStoreFactory>& factory : platformValueStoreFactories()) m_factories.push_back(factory);
}

void CValueStoreManager::addFactory(const P<IValueStoreFactory>& factory) {
    if (!factory) return;
    std::lock_guard lock(m_lock);
    m_factories.push_back(factory);
}

bool CValueStoreManager::removeFactory(const P<IValueStoreFactory>& factory) {
    std::lock_guard lock(m_lock);
    const auto found = std::find(m_factories.begin(), m_factories.end(), factory);
    if (found == m_factories.end()) return false;
    m_factories.erase(found);
    return true;
}

std::vector<P<IValueStoreFactory>> CValueStoreManager::factoriesNow() {
    std::lock_guard lock(m_lock);
    return m_factories;
}

P<IValueStore> CValueStoreManager::openValueStore(const P<IURI>& uri, bool readOnly) {
    return openValueStoreWith(uri, readOnly ? ValueStoreAccess::Read : ValueStoreAccess::ReadWrite);
}

// The factories are asked outside the lock: opening a store reads a file or the registry.
P<IValueStore> CValueStoreManager::openValueStoreWith(const P<IURI>& uri, ValueStoreAccess access) {
    if (!uri) return nullptr;
    for (const P<IValueStoreFactory>& factory : factoriesNow()) {
        if (P<IValueStore> store = factory->createValueStore(uri, access)) return store;
    }
    return nullptr;
}

P<IValueStoreManager> getValueStoreManager() {
    static const CGlobalObjFactory::ServiceKey key;
    return CGlobalObjFactory::service<IValueStoreManager>(
        key, [] { return P<IValueStoreManager>(make<CValueStoreManager>()); });
}

} // namespace zuno

#pragma once

#include <zuno/CObject.h>
#include <zuno/IValueStoreManager.h>

#include <mutex>
#include <vector>

namespace zuno {

// Starts with the XML and JSON factories, and on Windows the registry factory after them.
class CValueStoreManager : public CObject, public IValueStoreManager {
public:
    CValueStoreManager();

    void addFactory(const P<IValueStoreFactory>& factory) override;
    bool removeFactory(const P<IValueStoreFactory>& factory) override;
    P<IValueStore> openValueStore(const P<IURI>& uri, bool readOnly) override;
    P<IValueStore> openValueStoreWith(const P<IURI>& uri, ValueStoreAccess access) override;

private:
    std::vector<P<IValueStoreFactory>> factoriesNow();

    std::mutex m_lock;
    std::vector<P<IValueStoreFactory>> m_factories;
};

} // namespace zuno

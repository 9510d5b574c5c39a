#pragma once

#include <zuno/CObject.h>
#include <zuno/IValueStoreFactory.h>

namespace zuno::win32 {

// Takes "registry" URIs.
class CRegistryValueStoreFactory : public CObject, public IValueStoreFactory {
public:
    bool accepts(const P<IURI>& uri) override;
    P<IValueStore> createValueStore(const P<IURI>& uri, ValueStoreAccess access) override;
};

} // namespace zuno::win32

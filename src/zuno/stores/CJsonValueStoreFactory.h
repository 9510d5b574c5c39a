#pragma once

#include <zuno/CObject.h>
#include <zuno/IValueStoreFactory.h>

namespace zuno {

// Takes "file" URIs whose path ends in ".json".
class CJsonValueStoreFactory : public CObject, public IValueStoreFactory {
public:
    bool accepts(const P<IURI>& uri) override;
    P<IValueStore> createValueStore(const P<IURI>& uri, ValueStoreAccess access) override;
};

} // namespace zuno

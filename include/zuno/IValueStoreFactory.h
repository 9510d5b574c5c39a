#pragma once

#include <zuno/IValueStore.h>

namespace zuno {

// Makes the stores of one kind.
class IValueStoreFactory : public virtual IBase {
public:
    virtual bool accepts(const P<IURI>& uri) = 0;
    // A new store for `uri`, or null when the factory does not accept the URI.
    virtual P<IValueStore> createValueStore(const P<IURI>& uri, ValueStoreAccess access) = 0;
};

} // namespace zuno

#pragma once

#include <zuno/IValueStoreFactory.h>

namespace zuno {

// Opens value stores by URI, asking its factories in the order they were added: the XML
// store takes "file" URIs whose path ends in ".xml", the JSON store those ending in ".json",
// and on Windows the registry store takes "registry:" URIs
// ("registry:HKEY_CURRENT_USER/Software/Maker/App").
class IValueStoreManager : public virtual IBase {
public:
    virtual void addFactory(const P<IValueStoreFactory>& factory) = 0;
    // False when the factory was not there.
    virtual bool removeFactory(const P<IValueStoreFactory>& factory) = 0;
    // The store at `uri`, opened for reading only or for reading and writing; null when no
    // factory accepts the URI.
    virtual P<IValueStore> openValueStore(const P<IURI>& uri, bool readOnly) = 0;
    virtual P<IValueStore> openValueStoreWith(const P<IURI>& uri, ValueStoreAccess access) = 0;
};

// The process-wide value-store manager service.
P<IValueStoreManager> getValueStoreManager();

} // namespace zuno

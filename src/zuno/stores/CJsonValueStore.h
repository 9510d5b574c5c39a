#pragma once

#include "stores/CValueStoreBase.h"

#include <zuno/CVariantMap.h>

#include <memory>
#include <vector>

namespace zuno {

// A value store in a JSON file whose root is an object. A member whose value is an object
// is a sub-store, any other member a value, so a value and a sub-store cannot share a name
// (setting one where the other is raises CInvalidArgError). Numbers are read and written
// exactly: integers in full, doubles in their shortest exact form; a non-finite double is
// kept as the text "inf", "-inf" or "nan", which getDouble reads back. A null member reads
// as a missing value; arrays are kept as they are but are not values of the store.
class CJsonValueStore : public CValueStoreBase {
public:
    // Reads the file at `uri`; a missing or empty file gives an empty store. Text that is
    // not JSON raises CJsonParserError "JSON Parse Error in file '%FILE%', line %LINE%: "
    // followed by the parser's message, a root that is not an object CFileError, unless
    // `access` has DiscardUnreadable.
    CJsonValueStore(const P<IURI>& uri, ValueStoreAccess access);
    ~CJsonValueStore() override;

    bool isModified() const override;
    std::vector<String> getValueNames() override;
    bool removeValue(const String& name) override;
    bool hasSubStore(const String& name) override;
    std::vector<String> getSubStoreNames() override;
    P<IValueStore> getSubStore(const String& name, bool create) override;
    bool removeSubStore(const String& name) override;
    void store() override;
    // Replaces the whole file's content (on a sub-store too, which then stands for the root).
    void loadBinary(const std::string& data) override;

    // The document as it would be written.
    std::string toJson() const;

protected:
    P<IVariant> readValue(const String& name) override;
    void writeValue(const String& name, const P<IVariant>& value) override;

private:
    class Document;

    CJsonValueStore(const std::shared_ptr<Document>& document, P<IVariant> map);
    // The store's map, or CInvalidObjectStateError once the sub-store has been removed.
    CVariantMap& map() const;

    std::shared_ptr<Document> m_document;
    P<IVariant> m_map;  // null once removed
};

} // namespace zuno

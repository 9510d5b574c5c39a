#pragma once

#include "stores/CValueStoreBase.h"

#include <memory>
#include <vector>

class TiXmlElement;

namespace zuno {

// A value store in an XML file. The root element (added as "valuestore" when the document
// has none) is the store; a sub-store is a child element named after it, a value an
// attribute of its store's element holding the value's text: integers in full, doubles in
// their shortest exact form, booleans as "true" and "false". Names are encoded: one that
// begins with "-" or a digit gets "__L__" in front, and each blank becomes "__32__". A name
// that would still not be an XML name (empty, or with characters such as "/", "<" or a
// leading ".") raises CInvalidArgError rather than writing a file that cannot be read.
class CXmlValueStore : public CValueStoreBase {
public:
    // Reads the file at `uri`; a missing file gives an empty store. A file that is not
    // XML raises CFileError "XML Parse Error in file '%FILE%', line %LINE%." unless
    // `access` has DiscardUnreadable.
    CXmlValueStore(const P<IURI>& uri, ValueStoreAccess access);
    ~CXmlValueStore() override;

    static String encodeName(const String& name);
    static String decodeName(const String& name);

    bool isModified() const override;
    std::vector<String> getValueNames() override;
    bool removeValue(const String& name) override;
    bool hasSubStore(const String& name) override;
    std::vector<String> getSubStoreNames() override;
    P<IValueStore> getSubStore(const String& name, bool create) override;
    bool removeSubStore(const String& name) override;
    void store() override;
    void loadBinary(const std::string& data) override;

    // The document as it would be written.
    std::string toXml() const;

protected:
    P<IVariant> readValue(const String& name) override;
    void writeValue(const String& name, const P<IVariant>& value) override;

private:
    class Document;

    CXmlValueStore(const std::shared_ptr<Document>& document, TiXmlElement* element);
    // The element, or CInvalidObjectStateError once the sub-store has been removed.
    TiXmlElement& element() const;
    // The encoded name, or CInvalidArgError when it cannot be an XML name.
    std::string xmlName(const String& name, const char* method) const;

    std::shared_ptr<Document> m_document;
    TiXmlElement* m_element;  // null once removed
};

} // namespace zuno

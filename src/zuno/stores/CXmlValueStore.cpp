#include "stores/CXmlValueStore.h"
#include "stores/storeFile.h"
#include "stores/valueText.h"
#include "text/utf8Decode.h"

#include <zuno/CObjectError.h>
#include <zuno/CURIError.h>
#include <zuno/CVariantString.h>
#include <zuno/IStringLocalizer.h>
#include <zuno/messageTexts.h>
#include <zuno/xmlNestingDepth.h>

#include <tinyxml.h>

#include <algorithm>
#include <cctype>

namespace zuno {

namespace {

const wchar_t LeadingMark[] = L"__L__";
const wchar_t BlankMark[] = L"__32__";
const char RootName[] = "valuestore";
// TinyXML reads elements recursively; deeper documents are refused before it sees them.
constexpr size_t MaxNesting = 1000;

// The characters TinyXML reads as a name: a letter, "_" or any byte of a multi-byte
// character first, then also digits, "-", "." and ":".
bool isXmlName(const std::string& name) {
    if (name.empty()) return false;
    const auto isLetter = [](unsigned char c) { return c >= 127 || std::isalpha(c) || c == '_'; };
    if (!isLetter(static_cast<unsigned char>(name[0]))) return false;
    return std::all_of(name.begin() + 1, name.end(), [&](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return isLetter(byte) || std::isdigit(byte) || c == '-' || c == '.' || c == ':';
    });
}

// The text of a scalar as an attribute holds it.
std::string attributeText(const IVariant& value) {
    switch (value.getKind()) {
    case IVariant::Kind::Boolean: return valueText::fromBoolean(value.getBoolean()).toStdString();
    case IVariant::Kind::Int32:
    case IVariant::Kind::Int64: return valueText::fromInt64(value.getInt64()).toStdString();
    case IVariant::Kind::UInt64: return valueText::fromUInt64(value.getUInt64()).toStdString();
    case IVariant::Kind::Double: return valueText::fromDouble(value.getDouble()).toStdString();
    default: return value.getString().toStdString();
    }
}

// The line (from 1) of the byte at `offset`.
int lineAt(const std::string& bytes, size_t offset) {
    return int(std::count(bytes.begin(), bytes.begin() + std::ptrdiff_t(offset), '\n')) + 1;
}

bool isInside(const TiXmlNode* node, const TiXmlNode* ancestor) {
    for (; node; node = node->Parent()) {
        if (node == ancestor) return true;
    }
    return false;
}

} // namespace

// The parsed file, shared by a store and its sub-stores, with the sub-store objects that
// are alive so that removing an element can detach the objects that point into it.
class CXmlValueStore::Document {
public:
    Document(P<IURI> uri, ValueStoreAccess access) : uri(std::move(uri)), access(access) {}

    void makeEmpty() {
        xml = TiXmlDocument();
        xml.LinkEndChild(new TiXmlDeclaration("1.0", "UTF-8", ""));
    }

    void parse(const std::string& bytes) {
        if (xmlNestingDepth(bytes) > MaxNesting) {
            rejectUnreadable(L"The XML file '%FILE%' nests its elements too deeply.", 0);
            return;
        }
        // TinyXML reads past the end of a text that stops inside a UTF-8 sequence: text that
        // is not well-formed UTF-8 is a broken file at the line of its first bad byte.
        const size_t wellFormed = wellFormedUTF8Length(bytes);
        if (wellFormed < bytes.size()) {
            rejectUnreadable(messageTexts::XmlParseError, lineAt(bytes, wellFormed));
            return;
        }
        TiXmlDocument parsed;
        parsed.Parse(bytes.c_str(), nullptr, TIXML_ENCODING_UTF8);
        // An empty file (or one of blanks only) is a store not written yet.
        if (parsed.Error() && parsed.ErrorId() == TiXmlBase::TIXML_ERROR_DOCUMENT_EMPTY) {
            makeEmpty();
        } else if (parsed.Error()) {
            // TinyXML gives no place for a document that ends too early: its last line.
            rejectUnreadable(messageTexts::XmlParseError, parsed.ErrorRow() > 0 ? parsed.ErrorRow() : lineAt(bytes, bytes.size()));
        } else {
            xml = parsed;
        }
    }

    // A store opened to discard an unreadable file starts empty; otherwise the parse error.
    void rejectUnreadable(const wchar_t* text, int line) {
        if (hasAccess(access, ValueStoreAccess::DiscardUnreadable)) {
            makeEmpty();
            return;
        }
        String message = fillPlaceholder(text, L"FILE", uri->toString());
        message = fillPlaceholder(message, L"LINE", valueText::fromInt64(line));
        throw CFileError(message, uri);
    }

    TiXmlElement* root() {
        if (!xml.RootElement()) xml.LinkEndChild(new TiXmlElement(RootName));
        return xml.RootElement();
    }

    void detachInside(const TiXmlNode* removed) {
        for (CXmlValueStore* store : openStores) {
            if (isInside(store->m_element, removed)) store->m_element = nullptr;
        }
    }

    P<IURI> uri;
    ValueStoreAccess access;
    TiXmlDocument xml;
    bool modified = false;
    std::vector<CXmlValueStore*> openStores;
};

CXmlValueStore::CXmlValueStore(const P<IURI>& uri, ValueStoreAccess access)
    : CValueStoreBase(uri, access), m_document(std::make_shared<Document>(uri, access)), m_element(nullptr) {
    std::string bytes;
    if (storeFile::read(uri, bytes, L"CXmlValueStore::load")) m_document->parse(bytes);
    else m_document->makeEmpty();
    m_element = m_document->root();
    m_document->openStores.push_back(this);
}

CXmlValueStore::CXmlValueStore(const std::shared_ptr<Document>& document, TiXmlElement* element)
    : CValueStoreBase(document->uri, document->access), m_document(document), m_element(element) {
    m_document->openStores.push_back(this);
}

CXmlValueStore::~CXmlValueStore() {
    auto& stores = m_document->openStores;
    stores.erase(std::remove(stores.begin(), stores.end(), this), stores.end());
}

String CXmlValueStore::encodeName(const String& name) {
    String encoded = name;
    const char32_t first = name.isEmpty() ? 0 : name.charAt(0);
    if (first == U'-' || (first >= U'0' && first <= U'9')) encoded = String(LeadingMark) + encoded;
    return encoded.replace(L" ", BlankMark);
}

String CXmlValueStore::decodeName(const String& name) {
    String decoded = name.replace(BlankMark, L" ");
    if (decoded.startsWith(LeadingMark)) decoded = decoded.substring(String(LeadingMark).length());
    return decoded;
}

TiXmlElement& CXmlValueStore::element() const {
    if (!m_element) throw CInvalidObjectStateError(this, nullptr, L"its sub-store has been removed");
    return *m_element;
}

std::string CXmlValueStore::xmlName(const String& name, const char* method) const {
    std::string encoded = encodeName(name).toStdString();
    if (!isXmlName(encoded)) throw CInvalidArgError(this, nullptr, method, L"the name '" + name + L"'");
    return encoded;
}

bool CXmlValueStore::isModified() const {
    return m_document->modified;
}

P<IVariant> CXmlValueStore::readValue(const String& name) {
    const std::string encoded = encodeName(name).toStdString();
    const std::string* text = element().Attribute(encoded);
    return text ? P<IVariant>(make<CVariantString>(String::fromUTF8ToWide(*text))) : nullptr;
}

void CXmlValueStore::writeValue(const String& name, const P<IVariant>& value) {
    const std::string text = attributeText(*value);
    // XML cannot hold U+0000 (TinyXML reads "&#x00;" as the end of the value): refused
    // rather than cut short.
    if (text.find('\0') != std::string::npos)
        throw CInvalidArgError(this, nullptr, "setValue", L"a text with the character U+0000 for '" + name + L"'");
    element().SetAttribute(xmlName(name, "setValue"), text);
    m_document->modified = true;
}

std::vector<String> CXmlValueStore::getValueNames() {
    checkRead();
    std::vector<String> names;
    for (const TiXmlAttribute* attribute = element().FirstAttribute(); attribute; attribute = attribute->Next())
        names.push_back(decodeName(String::fromUTF8ToWide(attribute->NameTStr())));
    return names;
}

bool CXmlValueStore::removeValue(const String& name) {
    checkWrite();
    const std::string encoded = encodeName(name).toStdString();
    if (!element().Attribute(encoded)) return false;
    element().RemoveAttribute(encoded);
    m_document->modified = true;
    return true;
}

bool CXmlValueStore::hasSubStore(const String& name) {
    checkRead();
    return element().FirstChildElement(encodeName(name).toStdString()) != nullptr;
}

std::vector<String> CXmlValueStore::getSubStoreNames() {
    checkRead();
    std::vector<String> names;
    for (const TiXmlElement* child = element().FirstChildElement(); child; child = child->NextSiblingElement())
        names.push_back(decodeName(String::fromUTF8ToWide(child->ValueStr())));
    return names;
}

P<IValueStore> CXmlValueStore::getSubStore(const String& name, bool create) {
    checkRead();
    TiXmlElement* child = element().FirstChildElement(encodeName(name).toStdString());
    if (!child && create) {
        checkWrite();
        child = element().LinkEndChild(new TiXmlElement(xmlName(name, "getSubStore")))->ToElement();
        m_document->modified = true;
    }
    if (!child) return nullptr;
    return adopt<IValueStore>(new CXmlValueStore(m_document, child));
}

bool CXmlValueStore::removeSubStore(const String& name) {
    checkWrite();
    TiXmlElement* child = element().FirstChildElement(encodeName(name).toStdString());
    if (!child) return false;
    m_document->detachInside(child);
    element().RemoveChild(child);
    m_document->modified = true;
    return true;
}

std::string CXmlValueStore::toXml() const {
    TiXmlPrinter printer;
    printer.SetIndent("\t");
    m_document->xml.Accept(&printer);
    return printer.Str();
}

void CXmlValueStore::store() {
    if (!m_document->modified) return;
    checkWrite();
    storeFile::replace(getURI(), toXml(), L"CXmlValueStore::store");
    m_document->modified = false;
}

void CXmlValueStore::loadBinary(const std::string& data) {
    Document loaded(getURI(), getAccess());
    loaded.parse(data);  // raises before anything changes
    m_document->detachInside(&m_document->xml);
    m_document->xml = loaded.xml;
    m_element = m_document->root();
    m_document->modified = true;
}

} // namespace zuno

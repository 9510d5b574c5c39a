#include "stores/CJsonValueStore.h"
#include "stores/storeFile.h"
#include "stores/valueText.h"

#include <zuno/CError.h>
#include <zuno/CJsonParser.h>
#include <zuno/CJsonPrinter.h>
#include <zuno/CObjectError.h>
#include <zuno/CURIError.h>
#include <zuno/CUTF8InStream.h>
#include <zuno/CVariantString.h>
#include <zuno/IStringLocalizer.h>

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace zuno {

namespace {

bool isBlank(const std::string& bytes) {
    return bytes.find_first_not_of(" \t\r\n") == std::string::npos;
}

// The line (from 1) on which the parser stood after `units` UTF-16 code units of `bytes`.
int64_t lineAt(const std::string& bytes, int64_t units) {
    int64_t line = 1;
    for (size_t i = 0; i < bytes.size() && units > 0; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if ((byte & 0xC0) == 0x80) continue;  // a continuation byte adds no unit
        units -= byte >= 0xF0 ? 2 : 1;        // four-byte sequences are surrogate pairs
        if (byte == '\n' && units >= 0) ++line;
    }
    return line;
}

// The framework's parser in exact mode, whose errors also name the file and the line.
class StoreJsonParser : public CJsonParser {
public:
    StoreJsonParser(const std::string& bytes, const P<IURI>& uri)
        : CJsonParser(make<CUTF8InStream>(bytes), JsonMode::Exact), m_bytes(bytes), m_uri(uri) {}

protected:
    void raiseError(const String& message) const override {
        String text = fillPlaceholder(L"JSON Parse Error in file '%FILE%', line %LINE%: ", L"FILE", m_uri->toString());
        text = fillPlaceholder(text, L"LINE", valueText::fromInt64(lineAt(m_bytes, getPosition())));
        throw CJsonParserError(text + message);
    }

private:
    const std::string& m_bytes;
    P<IURI> m_uri;
};

// Every map in the tree below `root`, `root` included.
std::unordered_set<const IVariant*> mapsWithin(const P<IVariant>& root) {
    std::unordered_set<const IVariant*> maps;
    std::vector<const IVariant*> pending{root.get()};
    while (!pending.empty()) {
        const IVariant* map = pending.back();
        pending.pop_back();
        maps.insert(map);
        for (const CVariantMap::Entry& entry : map->asMap().getEntries()) {
            if (entry.value->isMap()) pending.push_back(entry.value.get());
        }
    }
    return maps;
}

} // namespace

// The parsed file, shared by a store and its sub-stores, with the store objects that are
// alive so that removing a sub-store can detach the objects that point into it.
class CJsonValueStore::Document {
public:
    Document(P<IURI> uri, ValueStoreAccess access) : uri(std::move(uri)), access(access), root(make<CVariantMap>()) {}

    // The root map of `bytes`; raises unless the store may discard what it cannot read.
    P<IVariant> parse(const std::string& bytes) const {
        if (isBlank(bytes)) return make<CVariantMap>();
        const bool discard = hasAccess(access, ValueStoreAccess::DiscardUnreadable);
        P<IVariant> parsed;
        try {
            parsed = StoreJsonParser(bytes, uri).parseDocument();
        } catch (const CJsonParserError&) {
            if (discard) return make<CVariantMap>();
            throw;
        }
        if (parsed && parsed->isMap()) return parsed;
        if (discard) return make<CVariantMap>();
        throw CFileError(fillPlaceholder(localizeText(L"zuno.CJsonValueStore.RootNotObject",
                                                      L"The JSON file '%FILE%' does not hold an object."),
                                         L"FILE", uri->toString()),
                         uri);
    }

    void detachWithin(const P<IVariant>& removed) {
        const auto maps = mapsWithin(removed);
        for (CJsonValueStore* store : openStores) {
            if (store->m_map && maps.count(store->m_map.get())) store->m_map = nullptr;
        }
    }

    P<IURI> uri;
    ValueStoreAccess access;
    P<IVariant> root;
    bool modified = false;
    std::vector<CJsonValueStore*> openStores;
};

CJsonValueStore::CJsonValueStore(const P<IURI>& uri, ValueStoreAccess access)
    : CValueStoreBase(uri, access), m_document(std::make_shared<Document>(uri, access)) {
    std::string bytes;
    if (storeFile::read(uri, bytes, L"CJsonValueStore::load")) m_document->root = m_document->parse(bytes);
    m_map = m_document->root;
    m_document->openStores.push_back(this);
}

CJsonValueStore::CJsonValueStore(const std::shared_ptr<Document>& document, P<IVariant> map)
    : CValueStoreBase(document->uri, document->access), m_document(document), m_map(std::move(map)) {
    m_document->openStores.push_back(this);
}

CJsonValueStore::~CJsonValueStore() {
    auto& stores = m_document->openStores;
    stores.erase(std::remove(stores.begin(), stores.end(), this), stores.end());
}

CVariantMap& CJsonValueStore::map() const {
    if (!m_map) throw CInvalidObjectStateError(this, nullptr, L"its sub-store has been removed");
    return m_map->asMap();
}

bool CJsonValueStore::isModified() const {
    return m_document->modified;
}

P<IVariant> CJsonValueStore::readValue(const String& name) {
    P<IVariant> value = map().get(name);
    return value && !value->isMap() ? value : nullptr;
}

void CJsonValueStore::writeValue(const String& name, const P<IVariant>& value) {
    CVariantMap& members = map();
    const P<IVariant> old = members.get(name);
    if (old && old->isMap()) throw CInvalidArgError(this, nullptr, L"setValue", L"'" + name + L"' names a sub-store");
    const bool finite = !value->isDouble() || std::isfinite(value->getDouble());
    members.set(name, finite ? value : P<IVariant>(make<CVariantString>(valueText::fromDouble(value->getDouble()))));
    m_document->modified = true;
}

std::vector<String> CJsonValueStore::getValueNames() {
    checkRead();
    std::vector<String> names;
    for (const CVariantMap::Entry& entry : map().getEntries()) {
        if (!entry.value->isMap()) names.push_back(entry.key);
    }
    return names;
}

bool CJsonValueStore::removeValue(const String& name) {
    checkWrite();
    const P<IVariant> old = map().get(name);
    if (!old || old->isMap()) return false;
    map().remove(name);
    m_document->modified = true;
    return true;
}

bool CJsonValueStore::hasSubStore(const String& name) {
    checkRead();
    const P<IVariant> member = map().get(name);
    return member && member->isMap();
}

std::vector<String> CJsonValueStore::getSubStoreNames() {
    checkRead();
    std::vector<String> names;
    for (const CVariantMap::Entry& entry : map().getEntries()) {
        if (entry.value->isMap()) names.push_back(entry.key);
    }
    return names;
}

P<IValueStore> CJsonValueStore::getSubStore(const String& name, bool create) {
    checkRead();
    P<IVariant> member = map().get(name);
    if (!member && create) {
        checkWrite();
        member = make<CVariantMap>();
        map().set(name, member);
        m_document->modified = true;
    } else if (member && !member->isMap() && create) {
        throw CInvalidArgError(this, nullptr, L"getSubStore", L"'" + name + L"' names a value");
    }
    if (!member || !member->isMap()) return nullptr;
    return adopt<IValueStore>(new CJsonValueStore(m_document, member));
}

bool CJsonValueStore::removeSubStore(const String& name) {
    checkWrite();
    const P<IVariant> member = map().get(name);
    if (!member || !member->isMap()) return false;
    m_document->detachWithin(member);
    map().remove(name);
    m_document->modified = true;
    return true;
}

std::string CJsonValueStore::toJson() const {
    return CJsonPrinter(true, JsonMode::Exact).print(*m_document->root).toStdString() + "\n";
}

void CJsonValueStore::store() {
    if (!m_document->modified) return;
    checkWrite();
    storeFile::replace(getURI(), toJson(), L"CJsonValueStore::store");
    m_document->modified = false;
}

void CJsonValueStore::loadBinary(const std::string& data) {
    P<IVariant> root = m_document->parse(data);  // raises before anything changes
    m_document->detachWithin(m_document->root);
    m_document->root = root;
    m_map = root;
    m_document->modified = true;
}

} // namespace zuno

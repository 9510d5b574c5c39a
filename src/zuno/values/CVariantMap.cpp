#include <zuno/CObjectError.h>
#include <zuno/CVariantMap.h>

#include "values/CVariantReleaser.h"

#include <cstring>
#include <string>
#include <utility>

namespace zuno {

namespace {

// Keys are kept as wide text, so equal keys have equal code units and can be compared
// and hashed bytewise.
bool sameWideText(const String& a, const String& b) {
    const int32_t bytes = a->getByteLength();
    return bytes == b->getByteLength() && std::memcmp(a->getData(), b->getData(), size_t(bytes)) == 0;
}

size_t hashWideText(const String& text) {
    const wchar_t* units = static_cast<const wchar_t*>(text->getData());
    const size_t count = size_t(text->getByteLength()) / sizeof(wchar_t);
    uint64_t hash = 0xcbf29ce484222325ull;  // FNV-1a over the code units
    for (size_t i = 0; i < count; ++i) hash = (hash ^ uint64_t(units[i])) * 0x100000001b3ull;
    return size_t(hash ^ (hash >> 29));
}

String wideKey(String key, const CVariantMap* map, const char* method) {
    if (key.isNull()) throw CInvalidArgError(map, nullptr, String(method), String(L"null key"));
    if (key.getEncoding() == Encoding::Wide) return key;
    return key.toWide();
}

} // namespace

CVariantMap::~CVariantMap() {
    CVariantReleaser releaser;
    for (Entry& entry : m_entries) releaser.release(entry.value);
}

const String& CVariantMap::getKeyAt(int32_t index) const {
    checkIndex(index, "CVariantMap::getKeyAt");
    return m_entries[size_t(index)].key;
}

const P<IVariant>& CVariantMap::getValueAt(int32_t index) const {
    checkIndex(index, "CVariantMap::getValueAt");
    return m_entries[size_t(index)].value;
}

int32_t CVariantMap::indexOf(const String& key) const {
    if (key.isNull()) return -1;
    const String wide = key.toWide();
    return find(wide, m_slots.empty() ? 0 : hashWideText(wide));
}

P<IVariant> CVariantMap::get(const String& key) const {
    const int32_t index = indexOf(key);
    return index < 0 ? nullptr : m_entries[size_t(index)].value;
}

void CVariantMap::set(String key, P<IVariant> value) {
    if (!value) throw CInvalidArgError(this, nullptr, String("CVariantMap::set"), String(L"null value"));
    String wide = wideKey(std::move(key), this, "CVariantMap::set");
    const size_t hash = m_slots.empty() ? 0 : hashWideText(wide);
    const int32_t index = find(wide, hash);
    if (index >= 0) {
        P<IVariant> old = std::exchange(m_entries[size_t(index)].value, std::move(value));
        CVariantReleaser().release(old);
        return;
    }
    m_entries.push_back(Entry{std::move(wide), std::move(value)});
    if (!m_slots.empty() && m_entries.size() * 2 <= m_slots.size()) {
        addToIndex(int32_t(m_entries.size() - 1), hash);
    } else if (m_entries.size() > LinearSearchLimit) {
        rebuildIndex();
    }
}

bool CVariantMap::remove(const String& key) {
    const int32_t index = indexOf(key);
    if (index < 0) return false;
    P<IVariant> old = std::move(m_entries[size_t(index)].value);
    m_entries.erase(m_entries.begin() + index);
    rebuildIndex();
    CVariantReleaser().release(old);
    return true;
}

void CVariantMap::clear() {
    Entries old;
    old.swap(m_entries);
    m_slots.clear();
    CVariantReleaser releaser;
    for (Entry& entry : old) releaser.release(entry.value);
}

void CVariantMap::reserve(int32_t count) {
    if (count > 0) m_entries.reserve(size_t(count));
}

int32_t CVariantMap::find(const String& wideKey, size_t hash) const {
    if (m_slots.empty()) {
        for (size_t i = 0; i < m_entries.size(); ++i) {
            if (sameWideText(m_entries[i].key, wideKey)) return int32_t(i);
        }
        return -1;
    }
    const size_t mask = m_slots.size() - 1;
    for (size_t slot = hash & mask;; slot = (slot + 1) & mask) {
        const int32_t entry = m_slots[slot] - 1;
        if (entry < 0) return -1;
        if (sameWideText(m_entries[size_t(entry)].key, wideKey)) return entry;
    }
}

void CVariantMap::rebuildIndex() {
    m_slots.clear();
    if (m_entries.size() <= LinearSearchLimit) return;
    size_t size = 16;
    while (size < m_entries.size() * 4) size *= 2;
    m_slots.assign(size, 0);
    for (size_t i = 0; i < m_entries.size(); ++i) addToIndex(int32_t(i), hashWideText(m_entries[i].key));
}

void CVariantMap::addToIndex(int32_t entry, size_t hash) {
    const size_t mask = m_slots.size() - 1;
    size_t slot = hash & mask;
    while (m_slots[slot] != 0) slot = (slot + 1) & mask;
    m_slots[slot] = entry + 1;
}

void CVariantMap::checkIndex(int32_t index, const char* method) const {
    if (index < 0 || index >= getCount()) {
        throw CInvalidArgError(this, nullptr, String(method),
                               String::fromUTF8ToWide("index " + std::to_string(index) + " out of range"));
    }
}

} // namespace zuno
